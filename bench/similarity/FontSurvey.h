#pragma once

#include "helpers/shape/FaceAnalysis.h"

#include <QString>
#include <QStringList>

#include <array>
#include <vector>

// The letters that the method "similar" compares.
constexpr std::array<char, 5> QueryLetters = {'h', 't', 'l', 'a', 'f'};

// 16 x 16 shares of ink of a letter whose ink is stretched over the square; empty without the letter.
using LetterBitmap = std::vector<float>;

// The font files of a folder, and one of their faces as the adder measures it.
struct SurveyedFace
{
    QString file;
    QString family;
    QString style;
    QString postScriptName;
    int statedWeight = 0; // usWeightClass, 0 without the table
    krv::FaceAnalysis analysis;
    std::array<LetterBitmap, QueryLetters.size()> bitmaps;
};

QStringList fontFiles(const QString& folder);

// The first face of each file that FreeType opens.
std::vector<SurveyedFace> surveyFonts(const QStringList& files);

// The folder that bench/similarity/fetch-fonts fills; it is run when there is none. Empty when that fails.
QString benchFonts();
