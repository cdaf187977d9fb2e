#pragma once

#include "fontfile/GlyphWorkLimit.h"
#include "fontfile/KrvFontFile.h"
#include "fontlens/letters/GlyphOutline.h"

namespace kerval::letters {

// One face of a font file as a source of outlines. Belongs to the thread that makes it, like the file it opens. What a
// damaged or hostile font can cost is bounded: such glyphs are empty.
class CandidateFace
{
public:
    CandidateFace(const QString& file, int faceIndex);

    bool isOpen() const { return m_open; }
    // Empty when the face has no such glyph, or one without ink or outline.
    GlyphOutline outline(QChar character);

private:
    KrvFontFile m_file;
    GlyphWorkLimit m_limit;
    bool m_open = false;
    bool m_symbol = false;
};

} // namespace kerval::letters
