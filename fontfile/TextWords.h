#pragma once

#include <QString>
#include <QVector>

struct TextWord
{
    int start = 0;
    int length = 0;
};

// The words of one paragraph, between which a line may be broken. White space belongs to none. Punctuation belongs to
// the word that it touches (an opening bracket to the one after it), so that no break loses it; what is neither, such
// as symbols, ideographs and private characters, are words of their own. A word before the last unit of the paragraph
// takes this unit along, whatever it is.
QVector<TextWord> wordsOf(const QString& paragraph);
