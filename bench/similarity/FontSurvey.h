#pragma once

#include "helpers/shape/FaceAnalysis.h"

#include <QString>
#include <QStringList>

#include <vector>

// The font files of a folder, and one of their faces as the adder measures it.
struct SurveyedFace
{
    QString file;
    QString family;
    QString style;
    QString postScriptName;
    int statedWeight = 0; // usWeightClass, 0 without the table
    krv::FaceAnalysis analysis;
};

QStringList fontFiles(const QString& folder);

// The first face of each file that FreeType opens.
std::vector<SurveyedFace> surveyFonts(const QStringList& files);

// The folder that bench/similarity/fetch-fonts fills; it is run when there is none. Empty when that fails.
QString benchFonts();
