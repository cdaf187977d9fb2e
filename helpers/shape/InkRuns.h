#pragma once

namespace krv {

class GlyphInk;
class InkGrid;
struct GlyphMeasures;

// Fills in what is measured by runs: strokes along the rows and down the columns, their number, the profiles of the
// four sides, and enclosed white. A run is an unbroken stretch of pixels with any ink; one that never gets dark is the
// grazed edge of something. `turned` is the ink's grid, transposed.
void measureRuns(const GlyphInk& ink, const InkGrid& turned, GlyphMeasures& measures);

} // namespace krv
