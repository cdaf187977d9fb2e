#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace kerval::helpers {

// Writes filled buffers to open files in a thread of its own, so that reading the catalogue and writing the files
// overlap. Used from one thread. The files stay open until finish() has returned.
class BackgroundWriter
{
public:
    BackgroundWriter();
    ~BackgroundWriter();
    BackgroundWriter(const BackgroundWriter&) = delete;
    BackgroundWriter& operator=(const BackgroundWriter&) = delete;

    // Takes the buffer's content and leaves an empty one with room; waits while too much is unwritten. False once a
    // write has failed: what follows is dropped.
    bool write(int file, std::string& buffer);
    // Waits until everything is written; false when any write has failed.
    bool finish();

private:
    void run();

    std::mutex m_lock;
    std::condition_variable m_changed;
    std::vector<std::pair<int, std::string>> m_waiting;
    std::vector<std::string> m_spare;
    bool m_busy = false;
    bool m_failed = false;
    bool m_stopping = false;
    std::thread m_thread; // last: it uses all of the above
};

} // namespace kerval::helpers
