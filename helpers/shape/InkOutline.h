#pragma once

namespace krv {

class GlyphInk;
struct GlyphMeasures;

// Fills in what is measured along the outline: its length, its directions, where on the glyph they lie, and the slant.
// The gradient between four pixels points across the outline; its length adds up to the outline's length.
void measureOutline(const GlyphInk& ink, GlyphMeasures& measures);

} // namespace krv
