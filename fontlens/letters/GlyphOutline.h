#pragma once

#include "fontlens/letters/Coverage.h"

#include <vector>

struct FT_Outline_;
struct FT_Vector_;

namespace kerval::letters {

// From units of the em (y up) to pixels (y down).
struct Placement
{
    double xx = 1, xy = 0, yx = 0, yy = 1;
    double dx = 0, dy = 0;

    // Scale in pixels per em, turned clockwise by radians, then stretched in height.
    static Placement of(double scale, double turn = 0, double stretch = 1);
};

// The outline of one glyph, detached from its face. Validated where it is taken (CandidateFace), so drawing it at the
// sizes of cut letters is cheap; it may be drawn on any thread.
class GlyphOutline
{
public:
    static constexpr int unitsPerEm = 256 * 64;

    GlyphOutline() = default;
    explicit GlyphOutline(const FT_Outline_& outline); // in units of 1/unitsPerEm

    bool isEmpty() const { return m_contourEnds.empty(); }

    struct Box
    {
        double left = 0, top = 0, right = 0, bottom = 0;
    };
    Box box(const Placement& placement) const; // of the control points, in pixels

    // Adds nothing: replaces the coverage's values by the glyph, which may reach beyond it.
    void draw(const Placement& placement, Coverage& coverage) const;

    // The contours that make up the largest connected part; empty when there is only one part.
    GlyphOutline mainPart() const;

private:
    bool isNested() const;

    std::vector<float> m_x;
    std::vector<float> m_y;
    std::vector<char> m_tags;
    std::vector<short> m_contourEnds;
    int m_flags = 0;
};

} // namespace kerval::letters
