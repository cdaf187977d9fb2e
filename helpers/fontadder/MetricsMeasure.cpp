#include "helpers/fontadder/MetricsMeasure.h"

#include "helpers/common/FeatureBlob.h"
#include "helpers/fontadder/FaceCoverage.h"

#include <algorithm>
#include <cstdio>
#include <optional>

#include FT_BBOX_H

namespace kerval::adder {

namespace {

// All in parts of the nominal size. The heights are those of a normal text face, so such a face keeps about its size.
// Ascenders and descenders may leave their row by the quarter that previews leave free above and below it.
constexpr double commonXHeight = 0.46;
constexpr double commonCapHeight = 0.66;
constexpr double baseline = 0.76;
constexpr double roomAbove = baseline + 0.20;
constexpr double roomBelow = 1.0 - baseline + 0.20;

constexpr double smallestFactor = 0.2;
constexpr double largestFactor = 4.0;
constexpr double unicaseRatio = 0.93;
constexpr int charactersPerBlock = 4;
constexpr int glyphsOfLegacyFace = 64;

// Extremes of a few characters (stacked accents, one swash) must not decide over all.
constexpr double extremeQuantile = 0.95;

struct GlyphExtent
{
    double top;
    double bottom;
    double width; // of the advance or the ink, whichever is wider
};

class Extents
{
public:
    explicit Extents(FT_Face face)
        : m_face(face)
        , m_em(face->units_per_EM)
    {
    }

    std::optional<GlyphExtent> add(FT_UInt glyph)
    {
        FT_BBox box{};
        if (glyph == 0 || FT_Load_Glyph(m_face, glyph, FT_LOAD_NO_SCALE) != 0 ||
            m_face->glyph->format != FT_GLYPH_FORMAT_OUTLINE || m_face->glyph->outline.n_points == 0 ||
            FT_Outline_Get_BBox(&m_face->glyph->outline, &box) != 0)
            return std::nullopt;
        const auto advance = static_cast<double>(m_face->glyph->metrics.horiAdvance);
        GlyphExtent extent{};
        extent.top = static_cast<double>(box.yMax) / m_em;
        extent.bottom = static_cast<double>(box.yMin) / m_em;
        extent.width = std::max(advance, static_cast<double>(box.xMax) - static_cast<double>(box.xMin)) / m_em;
        m_tops.push_back(extent.top);
        m_depths.push_back(-extent.bottom);
        m_widths.push_back(extent.width);
        return extent;
    }

    bool isEmpty() const { return m_tops.empty(); }
    double ascent() const { return quantile(m_tops, extremeQuantile); }
    double descent() const { return quantile(m_depths, extremeQuantile); }
    double widest(double share) const { return quantile(m_widths, share); }

    static double quantile(std::vector<double> values, double share)
    {
        if (values.empty())
            return 0;
        const auto at = static_cast<std::ptrdiff_t>(share * static_cast<double>(values.size() - 1) + 0.5);
        std::nth_element(values.begin(), values.begin() + at, values.end());
        return values[static_cast<std::size_t>(at)];
    }

private:
    FT_Face m_face;
    double m_em;
    std::vector<double> m_tops;
    std::vector<double> m_depths;
    std::vector<double> m_widths;
};

// How far a size may grow before the face leaves its row.
double fitting(const Extents& extents, double factor)
{
    if (extents.ascent() > 0)
        factor = std::min(factor, roomAbove / extents.ascent());
    if (extents.descent() > 0)
        factor = std::min(factor, roomBelow / extents.descent());
    return std::clamp(factor, smallestFactor, largestFactor);
}

std::string toText(double size, double cell)
{
    char text[64];
    std::snprintf(text, sizeof text, "%.4E;%.4E;%.4E", size, cell * size, baseline);
    return text;
}

class LatinHeights
{
public:
    void add(char letter, const GlyphExtent& extent)
    {
        constexpr std::string_view flatSmall = "vwxzunr";
        constexpr std::string_view flatCapital = "HEITXZ";
        if (flatSmall.find(letter) != std::string_view::npos)
            m_small.push_back(extent.top);
        if (flatCapital.find(letter) != std::string_view::npos)
            m_capital.push_back(extent.top);
    }

    // The factor that brings the letters to the common height; nothing without letters on the baseline.
    std::optional<double> factor() const
    {
        const double small = Extents::quantile(m_small, 0.5);
        const double capital = Extents::quantile(m_capital, 0.5);
        const bool unicase = capital > 0 && (small <= 0 || small / capital > unicaseRatio);
        if (unicase)
            return commonCapHeight / capital;
        if (small > 0)
            return commonXHeight / small;
        return std::nullopt;
    }

private:
    std::vector<double> m_small;
    std::vector<double> m_capital;
};

} // namespace

MetricsCorrections MetricsCorrections::of(FT_Face face, const std::vector<int>& reachedBlocks)
{
    MetricsCorrections corrections;
    if (!FT_IS_SCALABLE(face) || face->units_per_EM == 0)
        return corrections;

    Extents latin(face);
    LatinHeights heights;
    const bool isUnicode = face->charmap && face->charmap->encoding == FT_ENCODING_UNICODE;
    for (const char letter : helpers::featureAlphabet)
        if (isUnicode)
            if (const auto extent = latin.add(FT_Get_Char_Index(face, static_cast<FT_ULong>(letter))))
                heights.add(letter, *extent);
    const std::optional<double> latinFactor = heights.factor();

    Extents all = latin;
    for (const FT_ULong character : sampleCharacters(face, reachedBlocks, charactersPerBlock))
        all.add(FT_Get_Char_Index(face, character));
    // No Unicode, or none of the blocks: the first glyphs stand for all.
    const FT_Long standIns = all.isEmpty() ? std::min<FT_Long>(face->num_glyphs - 1, glyphsOfLegacyFace) : 0;
    for (FT_Long glyph = 1; glyph <= standIns; ++glyph)
        all.add(static_cast<FT_UInt>(glyph));
    if (all.isEmpty())
        return corrections;

    corrections.full =
        toText(fitting(all, latinFactor.value_or(1.0)), std::max(all.widest(extremeQuantile), latin.widest(1.0)));
    corrections.latin = latinFactor ? toText(fitting(latin, *latinFactor), latin.widest(1.0)) : corrections.full;
    return corrections;
}

} // namespace kerval::adder
