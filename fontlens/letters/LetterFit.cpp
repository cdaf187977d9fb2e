#include "fontlens/letters/LetterFit.h"

#include <algorithm>
#include <cmath>

namespace kerval::letters {

namespace {

constexpr double stretchCost = 0.3; // share of the misfit that a stretch explains and that is counted all the same
constexpr double mostStretchPixels = 0.7; // at the top and the foot of the letter
constexpr double mostTurn = 0.06;
constexpr double mostTurnOfAStep = 0.04;
constexpr double mostGrowthOfAStep = 0.1;
constexpr double leastGain = 0.8;
constexpr double mostGain = 1.3;
constexpr double mostOverhang = 0.6; // of the letter's size, on each side: beyond it nothing is drawn

// A x = b for a small symmetric matrix that is positive when it is of full rank; false when it is not.
template <std::size_t N>
bool solveSymmetric(std::array<std::array<double, N>, N> a, std::array<double, N> b, std::array<double, N>& x)
{
    for (std::size_t i = 0; i < N; ++i) {
        for (std::size_t j = 0; j <= i; ++j) {
            double sum = a[i][j];
            for (std::size_t k = 0; k < j; ++k)
                sum -= a[i][k] * a[j][k];
            if (i != j) {
                a[i][j] = sum / a[j][j];
            } else {
                if (!(sum > 1e-9))
                    return false;
                a[i][i] = std::sqrt(sum);
            }
        }
    }
    for (std::size_t i = 0; i < N; ++i) {
        for (std::size_t k = 0; k < i; ++k)
            b[i] -= a[i][k] * b[k];
        b[i] /= a[i][i];
    }
    for (std::size_t i = N; i-- > 0;) {
        for (std::size_t k = i + 1; k < N; ++k)
            b[i] -= a[k][i] * b[k];
        b[i] /= a[i][i];
    }
    x = b;
    return true;
}

// What one row adds to the sums of a letter. Eight sums of each kind run side by side, because the compiler may not
// reorder one float sum but can keep these in vector registers.
class RowSums
{
public:
    enum Sum
    {
        Error,
        Product,
        Energy,
        XX, // of the drawing's slope across and down, and with the distance from the middle across
        XY,
        YY,
        XXd,
        XYd,
        YYd,
        XXdd,
        XYdd,
        YYdd,
        ErrorX,
        ErrorY,
        ErrorXd,
        ErrorYd,
        count
    };

    double operator[](Sum sum) const { return m_sums[sum]; }

    static RowSums of(const Coverage& drawn, int y, const float* wanted, float gain, float firstDistance,
                      bool withSystem);

private:
    static constexpr int lanes = 8;
    using Lanes = std::array<std::array<float, lanes>, count>;

    std::array<double, count> m_sums{};
};

RowSums RowSums::of(const Coverage& drawn, int y, const float* wanted, float gain, float firstDistance, bool withSystem)
{
    const float* here = drawn.row(y);
    const float* above = drawn.row(std::max(0, y - 1));
    const float* below = drawn.row(std::min(drawn.height - 1, y + 1));
    const int width = drawn.width;
    Lanes sums{};
    const auto add = [&](int x, std::size_t lane, int before, int after) {
        const float value = here[x];
        const float off = gain * wanted[x] - value;
        sums[Error][lane] += off * off;
        sums[Product][lane] += wanted[x] * value;
        sums[Energy][lane] += value * value;
        if (!withSystem)
            return;
        const float gx = 0.5F * (here[after] - here[before]);
        const float gy = 0.5F * (below[x] - above[x]);
        const float d = float(x) + firstDistance;
        const float xx = gx * gx;
        const float xy = gx * gy;
        const float yy = gy * gy;
        sums[XX][lane] += xx;
        sums[XY][lane] += xy;
        sums[YY][lane] += yy;
        sums[XXd][lane] += xx * d;
        sums[XYd][lane] += xy * d;
        sums[YYd][lane] += yy * d;
        sums[XXdd][lane] += xx * d * d;
        sums[XYdd][lane] += xy * d * d;
        sums[YYdd][lane] += yy * d * d;
        sums[ErrorX][lane] += off * gx;
        sums[ErrorY][lane] += off * gy;
        sums[ErrorXd][lane] += off * gx * d;
        sums[ErrorYd][lane] += off * gy * d;
    };
    if (width < 1)
        return {};
    add(0, 0, 0, std::min(1, width - 1));
    int x = 1;
    for (; x + lanes < width; x += lanes) {
        for (int lane = 0; lane < lanes; ++lane)
            add(x + lane, std::size_t(lane), x + lane - 1, x + lane + 1);
    }
    for (; x < width; ++x)
        add(x, 0, x - 1, std::min(width - 1, x + 1));
    RowSums result;
    for (std::size_t i = 0; i < count; ++i) {
        for (const float sum : sums[i])
            result.m_sums[i] += double(sum);
    }
    return result;
}

// The row's part of the normal equations; `e` is its distance from the middle. How the drawing changes with each of
// the unknowns: -gx, -gy for the shift, -gy e for the stretch, -(gx d + gy e) for the size, gx e - gy d for the turn.
void addRow(const RowSums& s, double e, std::array<std::array<double, 5>, 5>& matrix, std::array<double, 5>& right)
{
    using R = RowSums;
    matrix[0][0] += s[R::XX];
    matrix[0][1] += s[R::XY];
    matrix[0][2] += e * s[R::XY];
    matrix[0][3] += s[R::XXd] + e * s[R::XY];
    matrix[0][4] += s[R::XYd] - e * s[R::XX];
    matrix[1][1] += s[R::YY];
    matrix[1][2] += e * s[R::YY];
    matrix[1][3] += s[R::XYd] + e * s[R::YY];
    matrix[1][4] += s[R::YYd] - e * s[R::XY];
    matrix[2][2] += e * e * s[R::YY];
    matrix[2][3] += e * (s[R::XYd] + e * s[R::YY]);
    matrix[2][4] += e * (s[R::YYd] - e * s[R::XY]);
    matrix[3][3] += s[R::XXdd] + 2 * e * s[R::XYd] + e * e * s[R::YY];
    matrix[3][4] += s[R::XYdd] - e * s[R::XXd] + e * s[R::YYd] - e * e * s[R::XY];
    matrix[4][4] += s[R::YYdd] - 2 * e * s[R::XYd] + e * e * s[R::XX];
    right[0] -= s[R::ErrorX];
    right[1] -= s[R::ErrorY];
    right[2] -= e * s[R::ErrorY];
    right[3] -= s[R::ErrorXd] + e * s[R::ErrorY];
    right[4] += e * s[R::ErrorX] - s[R::ErrorYd];
}

} // namespace

LetterFit::LetterFit(std::vector<Coverage> letters, double blur)
    : m_blur(blur)
{
    for (Coverage& ink : letters) {
        Target target;
        target.ink = std::move(ink);
        double sum = 0, sumX = 0, sumY = 0;
        for (int y = 0; y < target.ink.height; ++y) {
            for (int x = 0; x < target.ink.width; ++x) {
                const auto value = double(target.ink.row(y)[x]);
                target.energy += value * value;
                sum += value;
                sumX += value * (x + 0.5);
                sumY += value * (y + 0.5);
            }
        }
        target.centreX = sum > 0 ? sumX / sum : 0;
        target.centreY = sum > 0 ? sumY / sum : 0;
        m_targets.push_back(std::move(target));
    }
}

LetterFit::State LetterFit::rescaled(const State& state, double factor)
{
    State result = state;
    result.scale *= factor;
    for (State::Letter& letter : result.letters) {
        letter.x *= factor;
        letter.y *= factor;
    }
    return result;
}

// At first the centres of gravity lie on each other. The anchor of an outline is its origin.
void LetterFit::place(const Target& target, const GlyphOutline& outline, const State& state,
                      State::Letter& letter) const
{
    Placement placement = Placement::of(state.scale, state.turn);
    const GlyphOutline::Box box = outline.box(placement);
    if (box.right - box.left > 4 * (target.ink.width + 8) || box.bottom - box.top > 4 * (target.ink.height + 8))
        return;
    placement.dx = 1 - std::floor(box.left);
    placement.dy = 1 - std::floor(box.top);
    Coverage drawn(int(box.right - box.left) + 4, int(box.bottom - box.top) + 4);
    outline.draw(placement, drawn);
    double sum = 0, sumX = 0, sumY = 0;
    for (int y = 0; y < drawn.height; ++y) {
        for (int x = 0; x < drawn.width; ++x) {
            const auto value = double(drawn.row(y)[x]);
            sum += value;
            sumX += value * (x + 0.5);
            sumY += value * (y + 0.5);
        }
    }
    if (!(sum > 0.5))
        return;
    letter.x = target.centreX - sumX / sum + placement.dx;
    letter.y = target.centreY - sumY / sum + placement.dy;
    letter.placed = true;
}

bool LetterFit::measure(const Target& target, const GlyphOutline& outline, const State& state,
                        const State::Letter& letter, double gain, bool withSystem, Normal& normal) const
{
    Placement placement = Placement::of(state.scale, state.turn, 1 + letter.stretch);
    placement.dx = letter.x;
    placement.dy = letter.y;
    const GlyphOutline::Box box = outline.box(placement);
    const double overhangX = mostOverhang * target.ink.width + 4;
    const double overhangY = mostOverhang * target.ink.height + 4;
    const int rim = 2 + int(std::ceil(2.6 * m_blur));
    const int left = int(std::floor(std::clamp(box.left - rim, -overhangX, 0.0)));
    const int top = int(std::floor(std::clamp(box.top - rim, -overhangY, 0.0)));
    const int right =
        int(std::ceil(std::clamp(box.right + rim, double(target.ink.width), target.ink.width + overhangX)));
    const int bottom =
        int(std::ceil(std::clamp(box.bottom + rim, double(target.ink.height), target.ink.height + overhangY)));
    placement.dx -= left;
    placement.dy -= top;
    Coverage drawn(right - left, bottom - top);
    outline.draw(placement, drawn);
    drawn.blur(m_blur);

    normal = {};
    const double middleX = target.centreX - left;
    const double middleY = target.centreY - top;
    const int width = drawn.width;
    std::vector<float> wanted(std::size_t(width), 0.0F);
    for (int y = 0; y < drawn.height; ++y) {
        const int inkY = y + top;
        std::fill(wanted.begin(), wanted.end(), 0.0F);
        if (inkY >= 0 && inkY < target.ink.height)
            std::copy_n(target.ink.row(inkY), target.ink.width, wanted.begin() - left);
        const RowSums sums = RowSums::of(drawn, y, wanted.data(), float(gain), float(0.5 - middleX), withSystem);
        normal.error += sums[RowSums::Error];
        normal.product += sums[RowSums::Product];
        normal.drawnEnergy += sums[RowSums::Energy];
        if (withSystem)
            addRow(sums, y + 0.5 - middleY, normal.matrix, normal.right);
    }
    for (std::size_t i = 0; i < unknowns; ++i) {
        for (std::size_t j = 0; j < i; ++j)
            normal.matrix[i][j] = normal.matrix[j][i];
    }
    return normal.drawnEnergy > 0;
}

// The shifts and stretches are eliminated letter by letter; what is left are size and turn.
void LetterFit::solve(std::vector<Normal>& normals, State& state)
{
    using Local = std::array<std::array<double, 3>, 3>;
    using Vector = std::array<double, 3>;
    std::array<std::array<double, 2>, 2> global{};
    std::array<double, 2> globalRight{};
    std::vector<std::array<Vector, 3>> parts(normals.size()); // local inverse times: size, turn, right
    std::vector<char> usable(normals.size(), 0);
    for (std::size_t n = 0; n < normals.size(); ++n) {
        const Normal& normal = normals[n];
        if (!state.letters[n].placed)
            continue;
        Local local{};
        for (std::size_t i = 0; i < 3; ++i) {
            for (std::size_t j = 0; j < 3; ++j)
                local[i][j] = normal.matrix[i][j];
        }
        Vector right{normal.right[0], normal.right[1], normal.right[2]};
        const double prior = stretchCost * normal.matrix[2][2];
        local[2][2] += prior;
        right[2] -= prior * state.letters[n].stretch;
        for (std::size_t i = 0; i < 3; ++i)
            local[i][i] *= 1.001;
        const Vector size{normal.matrix[0][3], normal.matrix[1][3], normal.matrix[2][3]};
        const Vector turn{normal.matrix[0][4], normal.matrix[1][4], normal.matrix[2][4]};
        if (!solveSymmetric(local, size, parts[n][0]) || !solveSymmetric(local, turn, parts[n][1]) ||
            !solveSymmetric(local, right, parts[n][2]))
            continue;
        usable[n] = 1;
        const auto dot = [](const Vector& a, const Vector& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; };
        global[0][0] += normal.matrix[3][3] - dot(size, parts[n][0]);
        global[0][1] += normal.matrix[3][4] - dot(size, parts[n][1]);
        global[1][1] += normal.matrix[4][4] - dot(turn, parts[n][1]);
        globalRight[0] += normal.right[3] - dot(size, parts[n][2]);
        globalRight[1] += normal.right[4] - dot(turn, parts[n][2]);
    }
    global[1][0] = global[0][1];
    global[0][0] *= 1.001;
    global[1][1] = global[1][1] * 1.02 + 1e-6; // a round letter does not tell its turn
    std::array<double, 2> step{};
    if (!solveSymmetric(global, globalRight, step))
        step = {};
    step[0] = std::clamp(step[0], -mostGrowthOfAStep, mostGrowthOfAStep);
    step[1] = std::clamp(step[1], -mostTurnOfAStep, mostTurnOfAStep);
    step[1] = std::clamp(state.turn + step[1], -mostTurn, mostTurn) - state.turn;
    state.scale *= 1 + step[0];
    state.turn += step[1];
    for (std::size_t n = 0; n < normals.size(); ++n) {
        State::Letter& letter = state.letters[n];
        std::array<double, 3> move{};
        for (std::size_t i = 0; i < 3 && usable[n]; ++i)
            move[i] = parts[n][2][i] - step[0] * parts[n][0][i] - step[1] * parts[n][1][i];
        letter.stretch += move[2];
        // The moves were found about the letter's middle; the anchor lies elsewhere and moves along.
        normals[n].right = {move[0], move[1], move[2], step[0], step[1]};
    }
}

void LetterFit::run(const std::vector<GlyphOutline>& outlines, int steps, State& state) const
{
    state.letters.resize(m_targets.size());
    double gain = 1;
    std::vector<Normal> normals(m_targets.size());
    std::vector<double> stiffness(m_targets.size());
    for (std::size_t n = 0; n < m_targets.size(); ++n) {
        if (!state.letters[n].placed && !outlines[n].isEmpty())
            place(m_targets[n], outlines[n], state, state.letters[n]);
    }
    for (int step = 0; step <= steps; ++step) {
        const bool last = step == steps;
        double product = 0, energy = 0;
        for (std::size_t n = 0; n < m_targets.size(); ++n) {
            State::Letter& letter = state.letters[n];
            if (!letter.placed)
                continue;
            letter.placed = measure(m_targets[n], outlines[n], state, letter, gain, !last, normals[n]);
            product += normals[n].product;
            energy += m_targets[n].energy;
        }
        const double better = energy > 0 ? std::clamp(product / energy, leastGain, mostGain) : 1;
        if (!last) {
            gain = better;
            for (std::size_t n = 0; n < normals.size(); ++n)
                stiffness[n] = normals[n].matrix[2][2];
            solve(normals, state);
            for (std::size_t n = 0; n < m_targets.size(); ++n) {
                State::Letter& letter = state.letters[n];
                if (!letter.placed)
                    continue;
                const auto& move = normals[n].right;
                const double half = 0.5 * std::max(6, m_targets[n].ink.height);
                const double bound = mostStretchPixels / half;
                const double stretch = std::clamp(letter.stretch, -bound, bound);
                const double stretched = move[2] + stretch - letter.stretch;
                letter.stretch = stretch;
                const double x = letter.x - m_targets[n].centreX;
                const double y = letter.y - m_targets[n].centreY;
                const double limit = 0.15 * std::max(m_targets[n].ink.width, m_targets[n].ink.height) + 1;
                letter.x += std::clamp(move[0] + move[3] * x - move[4] * y, -limit, limit);
                letter.y += std::clamp(move[1] + move[3] * y + move[4] * x + stretched * y, -limit, limit);
            }
            continue;
        }
        double sum = 0;
        for (std::size_t n = 0; n < m_targets.size(); ++n) {
            State::Letter& letter = state.letters[n];
            letter.deviance = most;
            if (letter.placed && m_targets[n].energy > 0) {
                // The error for the final gain follows from what was summed up for the earlier one.
                const double error = normals[n].error + (better * better - gain * gain) * m_targets[n].energy -
                                     2 * (better - gain) * normals[n].product +
                                     stretchCost * stiffness[n] * letter.stretch * letter.stretch;
                const double all = 0.5 * (better * better * m_targets[n].energy + normals[n].drawnEnergy);
                letter.deviance = std::clamp(error / all, 0.0, most);
            }
            sum += letter.deviance;
        }
        state.deviance = m_targets.empty() ? most : sum / double(m_targets.size());
    }
}

} // namespace kerval::letters
