#pragma once

#include <string>

namespace kerval::adder {

class FontFace;

// What a face is, from its tables. Bold and italic count when any of OS/2, head and the style name (the weight name and
// the metrics file of a Type 1 font) says so, because fonts often set only one of them; every weight from 700 is bold.
// Fixed pitch is measured on the advances of letters, because the tables are often wrong; where there are no letters
// the tables (post, PANOSE) are believed unless other characters contradict them.
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
