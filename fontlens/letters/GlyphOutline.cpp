#include "fontlens/letters/GlyphOutline.h"

#include "fontfile/FreeTypeLibraryRegistry.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

#include <algorithm>
#include <cmath>

namespace kerval::letters {

namespace {

constexpr double partsHeight = 72; // pixels per em at which parts are told apart
constexpr int partsMostPixels = 512;
constexpr double smallestPart = 0.02; // of the largest; smaller ones are flaws of the outline
constexpr double farthestPixel = 20000;

} // namespace

Placement Placement::of(double scale, double turn, double stretch)
{
    const double c = std::cos(turn);
    const double s = std::sin(turn);
    Placement result;
    result.xx = scale * c;
    result.xy = scale * stretch * s;
    result.yx = scale * s;
    result.yy = -scale * stretch * c;
    return result;
}

GlyphOutline::GlyphOutline(const FT_Outline_& outline)
    : m_tags(outline.tags, outline.tags + outline.n_points)
    , m_contourEnds(outline.contours, outline.contours + outline.n_contours)
    , m_flags(outline.flags & ~FT_OUTLINE_OWNER)
{
    m_x.reserve(m_tags.size());
    m_y.reserve(m_tags.size());
    for (int i = 0; i < outline.n_points; ++i) {
        m_x.push_back(float(outline.points[i].x) / unitsPerEm);
        m_y.push_back(float(outline.points[i].y) / unitsPerEm);
    }
}

GlyphOutline::Box GlyphOutline::box(const Placement& p) const
{
    Box result{1e9, 1e9, -1e9, -1e9};
    for (std::size_t i = 0; i < m_x.size(); ++i) {
        const double x = p.xx * double(m_x[i]) + p.xy * double(m_y[i]) + p.dx;
        const double y = p.yx * double(m_x[i]) + p.yy * double(m_y[i]) + p.dy;
        result = {std::min(result.left, x), std::min(result.top, y), std::max(result.right, x),
                  std::max(result.bottom, y)};
    }
    return result;
}

void GlyphOutline::draw(const Placement& p, Coverage& coverage) const
{
    std::fill(coverage.values.begin(), coverage.values.end(), 0.0F);
    const FT_Library library = FreeTypeLibraryRegistry::instance().currentThreadLibrary();
    if (isEmpty() || coverage.isEmpty() || !library)
        return;
    std::vector<FT_Vector> points(m_x.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
        const double x = p.xx * double(m_x[i]) + p.xy * double(m_y[i]) + p.dx;
        const double y = coverage.height - (p.yx * double(m_x[i]) + p.yy * double(m_y[i]) + p.dy);
        if (!(std::abs(x) < farthestPixel && std::abs(y) < farthestPixel))
            return;
        points[i] = {FT_Pos(std::lround(64 * x)), FT_Pos(std::lround(64 * y))};
    }
    FT_Outline outline{};
    outline.n_points = short(points.size());
    outline.n_contours = short(m_contourEnds.size());
    outline.points = points.data();
    outline.tags = const_cast<char*>(m_tags.data());
    outline.contours = const_cast<short*>(m_contourEnds.data());
    outline.flags = m_flags;

    std::vector<uchar> pixels(coverage.values.size());
    FT_Bitmap bitmap{};
    bitmap.width = unsigned(coverage.width);
    bitmap.rows = unsigned(coverage.height);
    bitmap.pitch = coverage.width;
    bitmap.buffer = pixels.data();
    bitmap.num_grays = 256;
    bitmap.pixel_mode = FT_PIXEL_MODE_GRAY;
    if (FT_Outline_Get_Bitmap(library, &outline, &bitmap) != 0)
        return;
    std::transform(pixels.begin(), pixels.end(), coverage.values.begin(),
                   [](uchar value) { return float(value) / 255; });
}

// One contour's box holds all others: counters, which is what most letters of several contours have.
bool GlyphOutline::isNested() const
{
    const auto all = std::minmax_element(m_x.begin(), m_x.end());
    const auto allY = std::minmax_element(m_y.begin(), m_y.end());
    std::size_t begin = 0;
    for (const short last : m_contourEnds) {
        const auto end = std::size_t(last) + 1;
        if (end > begin) {
            const auto x = std::minmax_element(m_x.begin() + long(begin), m_x.begin() + long(end));
            const auto y = std::minmax_element(m_y.begin() + long(begin), m_y.begin() + long(end));
            if (*x.first == *all.first && *x.second == *all.second && *y.first == *allY.first &&
                *y.second == *allY.second)
                return true;
        }
        begin = std::max(begin, end);
    }
    return false;
}

GlyphOutline GlyphOutline::mainPart() const
{
    if (m_contourEnds.size() < 2 || isNested())
        return {};
    Placement placement = Placement::of(partsHeight);
    const Box at = box(placement);
    placement.dx = 1 - std::floor(at.left);
    placement.dy = 1 - std::floor(at.top);
    Coverage drawn(std::clamp(int(at.right - at.left) + 4, 1, partsMostPixels),
                   std::clamp(int(at.bottom - at.top) + 4, 1, partsMostPixels));
    draw(placement, drawn);

    // Labels of connected ink, spread by one pixel, because a contour's points lie on the edge of its ink.
    std::vector<int> label(drawn.values.size(), -1);
    std::vector<int> areas;
    std::vector<int> open;
    const auto neighbours = [&drawn](int index, auto visit) {
        const int x = index % drawn.width;
        const int y = index / drawn.width;
        for (int ny = std::max(0, y - 1); ny <= std::min(drawn.height - 1, y + 1); ++ny) {
            for (int nx = std::max(0, x - 1); nx <= std::min(drawn.width - 1, x + 1); ++nx)
                visit(ny * drawn.width + nx);
        }
    };
    for (int start = 0; start < int(label.size()); ++start) {
        if (label[std::size_t(start)] >= 0 || drawn.values[std::size_t(start)] < 0.3F)
            continue;
        const int part = int(areas.size());
        areas.push_back(0);
        label[std::size_t(start)] = part;
        open.assign(1, start);
        while (!open.empty()) {
            const int index = open.back();
            open.pop_back();
            ++areas.back();
            neighbours(index, [&](int next) {
                if (label[std::size_t(next)] < 0 && drawn.values[std::size_t(next)] >= 0.3F) {
                    label[std::size_t(next)] = part;
                    open.push_back(next);
                }
            });
        }
    }
    if (areas.size() < 2)
        return {};
    const auto largest = std::max_element(areas.begin(), areas.end());
    const double counts = smallestPart * *largest;
    if (std::count_if(areas.begin(), areas.end(), [counts](int area) { return area >= counts; }) < 2)
        return {};

    GlyphOutline result;
    result.m_flags = m_flags;
    std::size_t begin = 0;
    for (const short last : m_contourEnds) {
        const auto end = std::size_t(last) + 1;
        int votes = 0;
        for (std::size_t i = begin; i < end; ++i) {
            const int x = int(placement.xx * double(m_x[i]) + placement.xy * double(m_y[i]) + placement.dx);
            const int y = int(placement.yx * double(m_x[i]) + placement.yy * double(m_y[i]) + placement.dy);
            if (x < 0 || y < 0 || x >= drawn.width || y >= drawn.height)
                continue;
            bool mine = false;
            bool other = false;
            neighbours(y * drawn.width + x, [&](int next) {
                const int part = label[std::size_t(next)];
                mine = mine || part == int(largest - areas.begin());
                other = other || (part >= 0 && part != int(largest - areas.begin()));
            });
            votes += int(mine) - int(other);
        }
        if (votes > 0) {
            result.m_x.insert(result.m_x.end(), m_x.begin() + long(begin), m_x.begin() + long(end));
            result.m_y.insert(result.m_y.end(), m_y.begin() + long(begin), m_y.begin() + long(end));
            result.m_tags.insert(result.m_tags.end(), m_tags.begin() + long(begin), m_tags.begin() + long(end));
            result.m_contourEnds.push_back(short(result.m_tags.size() - 1));
        }
        begin = std::max(begin, end);
    }
    return result;
}

} // namespace kerval::letters
