#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace kerval::helpers {

// Writes in a thread of its own, so that reading the catalogue and writing the files overlap. Used from one thread.
class BackgroundWriter
{
public:
    BackgroundWriter();
    ~BackgroundWriter(); // finishes what is being written
    BackgroundWriter(const BackgroundWriter&) = delete;
    BackgroundWriter& operator=(const BackgroundWriter&) = delete;

    // Waits until the last piece of work is done and starts this one, which tells whether it succeeded. False once any
    // has failed: this one is not begun then.
    bool start(std::function<bool()> work);
    // Waits until all is done; false when anything has failed.
    bool finish();

private:
    void run();

    std::mutex m_lock;
    std::condition_variable m_changed;
    std::function<bool()> m_work; // set until it is done
    bool m_failed = false;
    bool m_stopping = false;
    std::thread m_thread; // last: it uses all of the above
};

} // namespace kerval::helpers
