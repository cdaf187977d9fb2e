#pragma once

#include <functional>
#include <string>

// Measuring for the programs under bench/. The machines these run on vary by a factor of two from one minute to the
// next, so a figure means something only beside a reference measured alternately in the same run: every comparison
// runs ours and the reference in turn and reports the median of the pairwise ratios.
namespace kerval::bench {

// One row of the table that scripts/bench prints.
struct Row
{
    std::string what;
    double ours = 0;
    double reference = 0; // 0: none, the target is absolute
    std::string unit;
    double ratio = 0;
    std::string target; // as shown, for example "<= 0.5 x"
    bool met = false;
};

void report(const Row& row);

// Runs ours and the reference `pairs` times each, alternately, and reports the row. Both return the seconds that count
// (so that set-up stays outside). The target is met when the median ratio is at most `maxRatio`.
void compare(const std::string& what, double maxRatio, const std::function<double()>& ours,
             const std::function<double()>& reference, int pairs = 5, double perUnit = 1,
             const std::string& unit = "ms");

// Reports an absolute figure, for example a count or a bounded time: met when `value <= limit` (or >= for minimum).
void atMost(const std::string& what, double value, double limit, const std::string& unit);
void atLeast(const std::string& what, double value, double limit, const std::string& unit);

// Seconds that a call takes.
double seconds(const std::function<void()>& work);

} // namespace kerval::bench
