#pragma once

#include "helpers/fontadder/platform.h"

#include <string>
#include <string_view>

namespace kerval::adder {

// A Type 1 font is an outline file (.pfb, .pfa, .t1) and metrics files beside it (.pfm of Windows, .afm of Adobe),
// which say what the outlines do not: the menu name and the linked style, and the names of fonts that keep them
// encrypted.
struct Type1Companions
{
    bool isMetricsFile = false; // the named file holds metrics; "outlines" is the file beside it
    platform::FileContent outlines;
    std::string pfm;
    std::string afm;

    // Reads what belongs to the named file, if that is one of a Type 1 font; what is missing or unreadable stays empty.
    static Type1Companions find(const std::string& fileName, std::string_view content);
};

// The texts of a Windows metrics file.
struct PfmNames
{
    std::string menuFamily;
    std::string postScriptName;
    std::string copyright;
    bool isBold = false;
    bool isItalic = false;
    bool isFixedPitch = false;

    // False when the bytes are no such file.
    bool read(std::string_view bytes);
};

// The head of an Adobe metrics file.
struct AfmNames
{
    std::string fontName;
    std::string fullName;
    std::string familyName;
    std::string weight;
    std::string version;
    std::string notice;

    bool read(std::string_view text);
};

} // namespace kerval::adder
