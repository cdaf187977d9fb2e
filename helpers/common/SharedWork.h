#pragma once

#include <algorithm>
#include <atomic>
#include <thread>

namespace kerval::helpers {

constexpr int kWorkers = 2;

// Does work(begin, end, worker) for 0 to count in shares of `share`, which two threads take in turn: one that a busy
// machine lets start late leaves more to the other. Each thread says which worker it is, 0 or 1. With less than two
// whole shares there is no second thread. The work must not throw.
template <typename Work>
void shareWork(int count, int share, Work work)
{
    std::atomic<int> next{0};
    const auto takeShares = [&](int worker) {
        for (int begin = next.fetch_add(share); begin < count; begin = next.fetch_add(share)) {
            work(begin, std::min(begin + share, count), worker);
        }
    };
    std::thread helper;
    if (count >= 2 * share) {
        helper = std::thread(takeShares, 1);
    }
    takeShares(0);
    if (helper.joinable()) {
        helper.join();
    }
}

} // namespace kerval::helpers
