#include "bench/support/bench.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <sstream>
#include <vector>

namespace kerval::bench {

namespace {

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const size_t half = values.size() / 2;
    return values.size() % 2 ? values[half] : (values[half - 1] + values[half]) / 2;
}

std::string limitText(const char* relation, double limit, const std::string& unit)
{
    std::ostringstream text;
    text << relation << ' ' << limit << ' ' << unit;
    return text.str();
}

double scaleOf(const std::string& unit)
{
    return unit == "us" ? 1e6 : unit == "ms" ? 1e3 : 1;
}

} // namespace

void report(const Row& row)
{
    std::printf("ROW\t%s\t%.4g %s\t", row.what.c_str(), row.ours, row.unit.c_str());
    if (row.reference > 0)
        std::printf("%.4g %s\t%.2f x\t", row.reference, row.unit.c_str(), row.ratio);
    else
        std::printf("-\t-\t");
    std::printf("%s\t%s\n", row.target.c_str(), row.met ? "met" : "NOT MET");
    std::fflush(stdout);
}

void compare(const std::string& what, double maxRatio, const std::function<double()>& ours,
             const std::function<double()>& reference, int pairs, double perUnit, const std::string& unit)
{
    std::vector<double> oursTimes;
    std::vector<double> referenceTimes;
    std::vector<double> ratios;
    for (int i = 0; i < pairs; ++i) {
        // The order alternates too, so that whatever the first one warms up helps both alike.
        double mine = 0;
        double other = 0;
        if (i % 2 == 0) {
            mine = ours();
            other = reference();
        } else {
            other = reference();
            mine = ours();
        }
        oursTimes.push_back(mine);
        referenceTimes.push_back(other);
        ratios.push_back(mine / other);
    }
    const double scale = scaleOf(unit) / perUnit;
    const double ratio = median(ratios);
    report({what, median(oursTimes) * scale, median(referenceTimes) * scale, unit, ratio,
            limitText("<=", maxRatio, "x"), ratio <= maxRatio});
}

void atMost(const std::string& what, double value, double limit, const std::string& unit)
{
    report({what, value, 0, unit, 0, limitText("<=", limit, unit), value <= limit});
}

void atLeast(const std::string& what, double value, double limit, const std::string& unit)
{
    report({what, value, 0, unit, 0, limitText(">=", limit, unit), value >= limit});
}

double seconds(const std::function<void()>& work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

} // namespace kerval::bench
