#pragma once

#include <algorithm>
#include <atomic>
#include <thread>

namespace kerval::helpers {

// Does work(begin, end) for 0 to count in shares of `share`, which two threads take in turn: one that a busy machine
// lets start late leaves more to the other. Below `many` starting a thread costs more than it saves.
template <typename Work>
void shareWork(int count, int share, int many, Work work)
{
    std::atomic<int> next{0};
    const auto takeShares = [&] {
        for (int begin = next.fetch_add(share); begin < count; begin = next.fetch_add(share)) {
            work(begin, std::min(begin + share, count));
        }
    };
    std::thread helper;
    if (count >= many) {
        helper = std::thread(takeShares);
    }
    takeShares();
    if (helper.joinable()) {
        helper.join();
    }
}

} // namespace kerval::helpers
