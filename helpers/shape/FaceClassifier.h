#pragma once

#include <array>
#include <string>

#include <ft2build.h>
#include FT_FREETYPE_H

#include "helpers/shape/GlyphFeatures.h"

namespace krv {

struct FaceShape;

// Sorts a face into the catalogue's classes. The shapes of all letters give the odds; PANOSE, the family class and
// plain words in the names ("Script", "Fraktur") shift them by as much as they have proved to be worth. A keyword is
// given only when the odds are for it.
struct FaceClass
{
    bool serif = false;
    bool monospaced = false;
    bool symbol = false;
    bool text = false;           // made for reading: none of the classes for show
    bool ownSmallLetters = true; // complete and no second set of capitals
    unsigned char serifStyle = 0;
    unsigned char styleField = 0;
    std::string keywords; // joined by ", "; holds "serif" in any spelling only for a face with serifs

    static FaceClass of(FT_Face face, const FaceShape& shape,
                        const std::array<GlyphFeatures, kFeatureLetterCount>& features);
};

} // namespace krv
