#pragma once

#include "fontlens/letters/Coverage.h"
#include "fontlens/letters/GlyphOutline.h"

#include <array>
#include <vector>

namespace kerval::letters {

// Moves the outlines of one face onto cut letters and tells how much of the ink does not agree.
//
// One size and one small turn for all letters, a shift for each, and a slight stretch in height for each that hinting
// may have caused; a part of what the stretch takes away still counts. Each step draws the outlines where they are by
// now, blurred as the picture is, and solves the linear least squares for the rest of the way. Const and cheap to share
// between threads.
class LetterFit
{
public:
    // Deviance of a letter that the face does not have, or that fits no better.
    static constexpr double most = 0.6;

    struct State
    {
        double scale = 0; // pixels per em
        double turn = 0;  // clockwise, radians
        double deviance = most;

        struct Letter
        {
            bool placed = false;
            double x = 0; // where the outline's anchor lies
            double y = 0;
            double stretch = 0;
            double deviance = most;
        };
        std::vector<Letter> letters;
    };

    // Blur in pixels of these letters.
    LetterFit(std::vector<Coverage> letters, double blur);

    // One outline for each letter (empty where there is none). The state's scale must be set; the rest is taken up when
    // it comes from an earlier run, also of letters that were reduced otherwise (see rescaled()).
    void run(const std::vector<GlyphOutline>& outlines, int steps, State& state) const;

    static State rescaled(const State& state, double factor);

private:
    struct Target
    {
        Coverage ink;
        double energy = 0;
        double centreX = 0;
        double centreY = 0;
    };
    static constexpr std::size_t unknowns = 5; // shift x, y, stretch; size, turn
    struct Normal
    {
        std::array<std::array<double, unknowns>, unknowns> matrix{};
        std::array<double, unknowns> right{};
        double error = 0;
        double product = 0;
        double drawnEnergy = 0;
    };

    bool measure(const Target& target, const GlyphOutline& outline, const State& state, const State::Letter& letter,
                 double gain, bool withSystem, Normal& normal) const;
    void place(const Target& target, const GlyphOutline& outline, const State& state, State::Letter& letter) const;
    static void solve(std::vector<Normal>& normals, State& state);

    std::vector<Target> m_targets;
    double m_blur = 0;
};

} // namespace kerval::letters
