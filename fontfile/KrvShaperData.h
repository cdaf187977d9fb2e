#pragma once

#include "fontfile/KrvGlyphLayout.h"

// One shaped line, in whole pixels.
struct KrvShaperData
{
    KrvGlyphLayout::Buffer<quint32> glyphs;
    KrvGlyphLayout::Buffer<quint16> attributes;
    KrvGlyphLayout::Buffer<qint32> advances;
    KrvGlyphLayout::Buffer<QPoint> offsets;
    KrvGlyphLayout::Buffer<quint32> logClusters;
    KrvGlyphLayout::Buffer<qint64> pens; // sum of the advances before each glyph, and of all
};
