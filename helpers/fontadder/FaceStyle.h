#pragma once

#include <string>

namespace kerval::adder {

class FontFace;

// What a face is, from its tables. Bold and italic are the style links (OS/2, else head; the weight name of a Type 1
// font): a Black that heads a family of its own is not bold. Fixed pitch is measured on the advances of letters and
// digits, because the tables are often wrong, and taken from them (post, PANOSE) where there are none.
struct FaceStyle
{
    bool isBold = false;
    bool isItalic = false;
    bool isMonospaced = false;
    bool isSmallCaps = false; // drawn as small capitals, or able to draw them
    bool hasLigatures = false;

    static FaceStyle of(const FontFace& font);
};

} // namespace kerval::adder
