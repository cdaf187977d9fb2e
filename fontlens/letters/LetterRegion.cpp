#include "fontlens/letters/LetterRegion.h"

#include <algorithm>
#include <cmath>

namespace kerval::letters {

namespace {

enum PixelState : char
{
    Free,
    Blocked, // under a cut line
    Ours
};

constexpr int edgeWidth = 4; // as far as a soft edge reaches beyond the level
constexpr int inkMargin = edgeWidth + 1;
constexpr float levelAtZero = 0.17F;    // share of the ink's contrast from which on pixels are connected, and how it
constexpr float levelForEach = 0.0083F; // rises with the threshold: 0.2 at high sensitivity, 0.42 normal, 0.58 low
constexpr float contrastShare = 0.6F;   // of the threshold, in grey levels of all channels together
constexpr float noisyFrom = 0.06F;      // deviation of the noise, as a share of the contrast, to be smoothed away
constexpr int refinements = 2;

template <typename Visit>
void forNeighbours(int index, int width, int height, Visit visit)
{
    const int x = index % width;
    const int y = index / width;
    for (int ny = std::max(0, y - 1); ny <= std::min(height - 1, y + 1); ++ny) {
        for (int nx = std::max(0, x - 1); nx <= std::min(width - 1, x + 1); ++nx) {
            if (nx != x || ny != y)
                visit(ny * width + nx);
        }
    }
}

} // namespace

LetterRegion::LetterRegion(const ColourPatch& patch, const QList<QPointF>& points, int threshold, double missDistance,
                           const QList<QPolygonF>& cutLines, const Qt::Edges pictureEdges)
{
    m_noise = patch.noise();
    if (points.isEmpty() || !findInk(patch, points.first(), missDistance, leastContrast(patch, threshold)))
        return;
    m_state.assign(std::size_t(patch.width()) * std::size_t(patch.height()), Free);
    block(patch.width(), patch.height(), cutLines);
    const float wanted = std::clamp(levelAtZero + levelForEach * float(threshold), 0.1F, 0.75F);
    for (int round = 0; round <= refinements; ++round) {
        m_coverage = patch.along(m_ink);
        m_smooth = m_coverage;
        const float noise = m_noise / std::max(1.0F, ColourPatch::length(m_ink));
        if (noise > noisyFrom)
            m_smooth.blur(noise > 2 * noisyFrom ? 0.9 : 0.6);
        m_level = std::max(wanted, std::min(0.5F, 2 * noise));
        reset();
        for (const QPointF& point : points) {
            if (!seed(point, missDistance))
                return;
        }
        grow(m_seeds);
        if (m_area == 0)
            return;
        if (round < refinements)
            refineInk(patch);
    }
    const bool open = (m_box.left() == 0 && !(pictureEdges & Qt::LeftEdge)) ||
                      (m_box.top() == 0 && !(pictureEdges & Qt::TopEdge)) ||
                      (m_box.right() == patch.width() - 1 && !(pictureEdges & Qt::RightEdge)) ||
                      (m_box.bottom() == patch.height() - 1 && !(pictureEdges & Qt::BottomEdge));
    m_verdict = open ? Open : Closed;
}

float LetterRegion::leastContrast(const ColourPatch& patch, int threshold)
{
    return std::max({2.0F, contrastShare * float(threshold), 4 * patch.noise()});
}

// The colour of the ink at the first point: the strongest difference close by when there is one under the point, else
// at the nearest place that differs enough.
bool LetterRegion::findInk(const ColourPatch& patch, const QPointF& point, double missDistance, float leastContrast)
{
    const int centreX = std::clamp(int(point.x()), 0, patch.width() - 1);
    const int centreY = std::clamp(int(point.y()), 0, patch.height() - 1);
    const int reach = int(std::ceil(missDistance));
    double nearest = missDistance * missDistance + 1e-6;
    int foundX = -1;
    int foundY = -1;
    for (int y = std::max(0, centreY - reach); y <= std::min(patch.height() - 1, centreY + reach); ++y) {
        for (int x = std::max(0, centreX - reach); x <= std::min(patch.width() - 1, centreX + reach); ++x) {
            const double distance = double(x - centreX) * (x - centreX) + double(y - centreY) * (y - centreY);
            if (distance <= nearest && ColourPatch::length(patch.at(x, y)) >= leastContrast) {
                nearest = distance - 1e-6;
                foundX = x;
                foundY = y;
            }
        }
    }
    if (foundX < 0)
        return false;
    float strongest = 0;
    for (int y = std::max(0, foundY - 2); y <= std::min(patch.height() - 1, foundY + 2); ++y) {
        for (int x = std::max(0, foundX - 2); x <= std::min(patch.width() - 1, foundX + 2); ++x) {
            const float length = ColourPatch::length(patch.at(x, y));
            if (length > strongest) {
                strongest = length;
                m_ink = patch.at(x, y);
            }
        }
    }
    return true;
}

bool LetterRegion::seed(const QPointF& point, double missDistance)
{
    const int centreX = std::clamp(int(point.x()), 0, m_smooth.width - 1);
    const int centreY = std::clamp(int(point.y()), 0, m_smooth.height - 1);
    const int reach = int(std::ceil(missDistance));
    double nearest = missDistance * missDistance + 1e-6;
    int found = -1;
    for (int y = std::max(0, centreY - reach); y <= std::min(m_smooth.height - 1, centreY + reach); ++y) {
        for (int x = std::max(0, centreX - reach); x <= std::min(m_smooth.width - 1, centreX + reach); ++x) {
            const double distance = double(x - centreX) * (x - centreX) + double(y - centreY) * (y - centreY);
            const int index = y * m_smooth.width + x;
            if (distance <= nearest && m_smooth.row(y)[x] >= m_level && m_state[std::size_t(index)] != Blocked) {
                nearest = distance - 1e-6;
                found = index;
            }
        }
    }
    if (found >= 0)
        m_seeds.push_back(found);
    return found >= 0;
}

// Two pixels wide, so that ink that touches by corners alone does not leak through.
void LetterRegion::block(int width, int height, const QList<QPolygonF>& cutLines)
{
    const QRectF near = QRectF(0, 0, width, height).adjusted(-2, -2, 2, 2);
    for (const QPolygonF& line : cutLines) {
        for (int i = 1; i < line.size(); ++i) {
            // Only the piece within the patch is walked along: lines may be of any length.
            const QPointF way = line[i] - line[i - 1];
            double from = 0;
            double to = 1;
            const auto clip = [&](double start, double step, double low, double high) {
                if (step == 0) {
                    to = start < low || start > high ? -1 : to;
                    return;
                }
                const double one = (low - start) / step;
                const double other = (high - start) / step;
                from = std::max(from, std::min(one, other));
                to = std::min(to, std::max(one, other));
            };
            clip(line[i - 1].x(), way.x(), near.left(), near.right());
            clip(line[i - 1].y(), way.y(), near.top(), near.bottom());
            const double length = std::hypot(way.x(), way.y());
            const int steps = to < from ? -1 : int(4 * length * (to - from)) + 1;
            for (int k = 0; k <= steps; ++k) {
                const QPointF at = line[i - 1] + (from + (to - from) * k / steps) * way;
                const int x = int(std::floor(at.x()));
                const int y = int(std::floor(at.y()));
                for (const int column : {x, x + 1}) {
                    if (column >= 0 && y >= 0 && column < width && y < height)
                        m_state[std::size_t(y) * std::size_t(width) + std::size_t(column)] = Blocked;
                }
            }
        }
    }
}

void LetterRegion::reset()
{
    m_seeds.clear();
    std::replace(m_state.begin(), m_state.end(), char(Ours), char(Free));
    m_area = 0;
}

void LetterRegion::grow(std::vector<int> open)
{
    int left = m_smooth.width, right = -1, top = m_smooth.height, bottom = -1;
    for (const int index : open)
        m_state[std::size_t(index)] = Ours;
    while (!open.empty()) {
        const int index = open.back();
        open.pop_back();
        ++m_area;
        const int x = index % m_smooth.width;
        const int y = index / m_smooth.width;
        left = std::min(left, x);
        right = std::max(right, x);
        top = std::min(top, y);
        bottom = std::max(bottom, y);
        forNeighbours(index, m_smooth.width, m_smooth.height, [&](int next) {
            if (m_smooth.values[std::size_t(next)] < m_level)
                return;
            if (m_state[std::size_t(next)] == Free) {
                m_state[std::size_t(next)] = Ours;
                open.push_back(next);
            }
        });
    }
    m_box = right < 0 ? QRect() : QRect(QPoint(left, top), QPoint(right, bottom));
}

// The ink's full colour: the mean inside of the strokes; where they are too thin to have an inside, of the strongest
// fifth.
void LetterRegion::refineInk(const ColourPatch& patch)
{
    std::array<double, 3> sum{};
    int count = 0;
    std::vector<float> strengths;
    for (int y = m_box.top(); y <= m_box.bottom(); ++y) {
        for (int x = m_box.left(); x <= m_box.right(); ++x) {
            const int index = y * m_smooth.width + x;
            if (m_state[std::size_t(index)] != Ours)
                continue;
            strengths.push_back(m_coverage.values[std::size_t(index)]);
            int around = 0;
            forNeighbours(index, m_smooth.width, m_smooth.height,
                          [&](int next) { around += m_state[std::size_t(next)] == Ours ? 1 : 0; });
            if (around < 8)
                continue;
            const ColourPatch::Colour colour = patch.at(x, y);
            for (std::size_t channel = 0; channel < 3; ++channel)
                sum[channel] += double(colour[channel]);
            ++count;
        }
    }
    const bool hasInside = count >= 8 && count * 8 >= m_area;
    if (!hasInside) {
        const auto fifth = strengths.begin() + long(strengths.size() * 4 / 5);
        std::nth_element(strengths.begin(), fifth, strengths.end());
        sum = {};
        count = 0;
        for (int y = m_box.top(); y <= m_box.bottom(); ++y) {
            for (int x = m_box.left(); x <= m_box.right(); ++x) {
                const auto index = std::size_t(y * m_smooth.width + x);
                if (m_state[index] != Ours || m_coverage.values[index] < *fifth)
                    continue;
                const ColourPatch::Colour colour = patch.at(x, y);
                for (std::size_t channel = 0; channel < 3; ++channel)
                    sum[channel] += double(colour[channel]);
                ++count;
            }
        }
    }
    if (count > 0) {
        for (std::size_t channel = 0; channel < 3; ++channel)
            m_ink[channel] = float(sum[channel] / count);
    }
}

int LetterRegion::sidesTouched() const
{
    return int(m_box.left() == 0) + int(m_box.top() == 0) + int(m_box.right() == m_smooth.width - 1) +
           int(m_box.bottom() == m_smooth.height - 1);
}

QPoint LetterRegion::inkCorner() const
{
    return m_box.topLeft() - QPoint(inkMargin, inkMargin);
}

Coverage LetterRegion::ink() const
{
    Coverage result(m_box.width() + 2 * inkMargin, m_box.height() + 2 * inkMargin);
    const auto inPatch = [&, corner = inkCorner()](int x, int y) {
        const int px = x + corner.x();
        const int py = y + corner.y();
        return px >= 0 && py >= 0 && px < m_smooth.width && py < m_smooth.height ? py * m_smooth.width + px : -1;
    };
    // Ours and the others' ink spread alike over the soft edges; where they meet is the border.
    enum Owner : char
    {
        Nobody,
        Mine,
        Other
    };
    std::vector<char> owner(result.values.size(), Nobody);
    std::vector<char> blocked(result.values.size(), 0);
    std::vector<int> front;
    for (int y = 0; y < result.height; ++y) {
        for (int x = 0; x < result.width; ++x) {
            const int index = inPatch(x, y);
            if (index < 0)
                continue;
            const int here = y * result.width + x;
            blocked[std::size_t(here)] = m_state[std::size_t(index)] == Blocked ? 1 : 0;
            if (m_state[std::size_t(index)] == Ours)
                owner[std::size_t(here)] = Mine;
            else if (m_smooth.values[std::size_t(index)] >= m_level && m_state[std::size_t(index)] == Free)
                owner[std::size_t(here)] = Other;
            if (owner[std::size_t(here)] != Nobody)
                front.push_back(here);
        }
    }
    std::vector<int> next;
    for (int step = 0; step < edgeWidth; ++step) {
        next.clear();
        for (const int index : front) {
            if (blocked[std::size_t(index)])
                continue; // ink under a cut line is shared, and nothing spreads across
            forNeighbours(index, result.width, result.height, [&](int neighbour) {
                if (owner[std::size_t(neighbour)] == Nobody) {
                    owner[std::size_t(neighbour)] = owner[std::size_t(index)];
                    next.push_back(neighbour);
                }
            });
        }
        front.swap(next);
    }
    for (int y = 0; y < result.height; ++y) {
        for (int x = 0; x < result.width; ++x) {
            const int index = inPatch(x, y);
            if (index >= 0 && owner[std::size_t(y * result.width + x)] == Mine)
                result.row(y)[x] = std::clamp(m_coverage.values[std::size_t(index)], 0.0F, 1.0F);
        }
    }
    return result;
}

} // namespace kerval::letters
