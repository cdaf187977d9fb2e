#include "fontlens/letters/TouchingLetters.h"

#include <algorithm>
#include <cmath>

namespace kerval::letters {

namespace {

constexpr double wideFrom = 0.7;      // widths to heights: many a single letter is looked at in vain
constexpr double slants[] = {0, 0.2}; // of the cuts: columns to the right for each row up
constexpr double farthest = 1.5;      // heights from the click to a cut
constexpr double narrowest = 0.1;
constexpr double widest = 1.7;
constexpr std::size_t mostCuts = 5;    // on each side
constexpr std::size_t mostPieces = 12; // for each slant
constexpr float noInk = 0.1F;

struct Cut
{
    int column = 0;
    double ink = 0; // that it crosses
};

double shiftOf(double slant, double row, int height)
{
    return slant * (row + 0.5 - 0.5 * height);
}

// Ink along each of the slanting columns, smoothed a little.
std::vector<double> profileOf(const Coverage& ink, double slant)
{
    std::vector<double> sums(std::size_t(ink.width) + 2, 0);
    for (int y = 0; y < ink.height; ++y) {
        const double shift = shiftOf(slant, y, ink.height);
        for (int x = 0; x < ink.width; ++x) {
            const long column = std::lround(x + shift);
            if (column >= 0 && column < ink.width)
                sums[std::size_t(column) + 1] += double(ink.row(y)[x]);
        }
    }
    std::vector<double> result(std::size_t(ink.width));
    for (std::size_t i = 0; i < result.size(); ++i)
        result[i] = 0.25 * sums[i] + 0.5 * sums[i + 1] + 0.25 * sums[i + 2];
    return result;
}

// The places between two columns where the least ink is crossed, all around them considered.
std::vector<Cut> cutsBetween(const std::vector<double>& profile, int from, int to, int edge)
{
    std::vector<Cut> result;
    from = std::max(from, 0);
    to = std::min(to, int(profile.size()) - 1);
    if (edge >= from && edge <= to)
        result.push_back({edge, 0});
    for (int x = std::max(from, 1); x <= std::min(to, int(profile.size()) - 2); ++x) {
        const std::size_t i = std::size_t(x);
        if (profile[i] <= profile[i - 1] && profile[i] < profile[i + 1])
            result.push_back({x, profile[i]});
    }
    std::stable_sort(result.begin(), result.end(),
                     [](const Cut& one, const Cut& other) { return one.ink < other.ink; });
    if (result.size() > mostCuts)
        result.resize(mostCuts);
    return result;
}

Coverage between(const Coverage& ink, int left, int right, double slant)
{
    Coverage result = ink;
    for (int y = 0; y < ink.height; ++y) {
        const double shift = shiftOf(slant, y, ink.height);
        for (int x = 0; x < ink.width; ++x) {
            const long column = std::lround(x + shift);
            if (column < left || column > right)
                result.row(y)[x] = 0;
        }
    }
    return result.cropped(noInk);
}

} // namespace

std::vector<Coverage> lettersAround(const Coverage& ink, const QPointF& click)
{
    const Coverage tight = ink.cropped(noInk);
    if (tight.isEmpty() || tight.width < wideFrom * tight.height || tight.height < 8)
        return {};
    const double height = tight.height;
    std::vector<Coverage> result;
    for (const double slant : slants) {
        const std::vector<double> profile = profileOf(ink, slant);
        int first = 0;
        int last = ink.width - 1;
        while (first < last && profile[std::size_t(first)] < 0.5)
            ++first;
        while (last > first && profile[std::size_t(last)] < 0.5)
            --last;
        const int middle = int(std::lround(click.x() - 0.5 + shiftOf(slant, click.y() - 0.5, ink.height)));
        const int near = int(0.04 * height) + 1;
        const int far = int(farthest * height);
        struct Piece
        {
            int left = 0;
            int right = 0;
            double ink = 0;
        };
        std::vector<Piece> pieces;
        const std::vector<Cut> rights = cutsBetween(profile, middle + near, middle + far, last);
        for (const Cut& left : cutsBetween(profile, middle - far, middle - near, first)) {
            for (const Cut& right : rights) {
                const int width = right.column - left.column;
                const bool isAll = left.column == first && right.column == last;
                if (!isAll && width >= narrowest * height && width <= widest * height)
                    pieces.push_back({left.column, right.column, left.ink + right.ink});
            }
        }
        std::stable_sort(pieces.begin(), pieces.end(),
                         [](const Piece& one, const Piece& other) { return one.ink < other.ink; });
        if (pieces.size() > mostPieces)
            pieces.resize(mostPieces);
        for (const Piece& piece : pieces) {
            Coverage part = between(ink, piece.left, piece.right, slant);
            if (!part.isEmpty())
                result.push_back(std::move(part));
        }
    }
    return result;
}

} // namespace kerval::letters
