#pragma once

#include <QString>

// One row of the fixed table of character ranges that the catalogue, the filters and the character map share; its index
// in KrvFontFile::unicodeBlocks() is what records and settings store.
struct UnicodeBlock
{
    QString name;
    int first = 0;
    int last = 0; // inclusive
};
