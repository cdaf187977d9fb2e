#pragma once

#include <string>

#include "helpers/shape/FaceMeasures.h"

namespace krv {

// Sorts a face into the catalogue's classes. Tables are asked where fonts fill them in with care (fixed pitch, symbol
// encodings, PANOSE); the letters' shapes decide the rest.
struct FaceClass
{
    bool serif = false;
    bool monospaced = false;
    bool symbol = false;
    unsigned char serifStyle = 0;
    unsigned char styleField = 0;
    std::string keywords; // joined by ", "; never holds "Serif" for a face without serifs

    static FaceClass of(FT_Face face, const FaceShape& shape, const FaceMeasures& measures);
};

} // namespace krv
