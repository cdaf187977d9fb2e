#pragma once

#include "fontfile/KrvFontFile.h"

#include <QHash>

#include <chrono>

// Bounds the work that the glyphs of one open face can cause. FreeType limits instructions, points and nesting by
// themselves; three things it lets through are refused here:
// - composite glyphs that reach themselves, nest deeply, or multiply (ten parts of ten parts of ten parts ...);
// - outlines whose edges cross so many pixels that rasterising one glyph takes minutes;
// - a face that stays below those limits but is slow all the time: time beyond an ample allowance for each call is
//   added up, and when it reaches the budget no glyph is loaded or drawn until reset().
class GlyphWorkLimit
{
public:
    // Counts the time of one call of FreeType against the budget.
    class Timed
    {
    public:
        explicit Timed(GlyphWorkLimit& limit);
        ~Timed();
        Timed(const Timed&) = delete;
        Timed& operator=(const Timed&) = delete;

    private:
        GlyphWorkLimit& m_limit;
        std::chrono::steady_clock::time_point m_start;
    };

    bool mayLoad(FT_Face face, unsigned int glyph);
    bool mayRender(const FT_Outline_& outline) const;
    void reset() { m_spent = {}; }

private:
    // Glyphs that loading this one loads, itself included; saturates at the limit, which means "refuse".
    int composedGlyphs(FT_Face face, unsigned int glyph, int depth);
    bool locateGlyphs(FT_Face face);

    enum class Outlines
    {
        NotLookedAt,
        None,
        Found
    };
    Outlines m_outlines = Outlines::NotLookedAt;
    bool m_longOffsets = false;
    unsigned long m_glyphDataSize = 0;
    unsigned long m_offsetsSize = 0;
    QHash<unsigned int, int> m_composed;
    std::chrono::steady_clock::duration m_spent{};
};
