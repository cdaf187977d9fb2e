#include "helpers/extractfeatures/BackgroundWriter.h"

#include <cerrno>

#include <unistd.h>

namespace kerval::helpers {

namespace {

constexpr std::size_t kMostWaiting = 64;

bool writeAll(int file, const std::string& bytes)
{
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t count = ::write(file, bytes.data() + done, bytes.size() - done);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return false;
        }
        done += static_cast<std::size_t>(count);
    }
    return true;
}

} // namespace

BackgroundWriter::BackgroundWriter()
    : m_thread([this] { run(); })
{
}

BackgroundWriter::~BackgroundWriter()
{
    {
        const std::lock_guard<std::mutex> guard(m_lock);
        m_stopping = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

void BackgroundWriter::run()
{
    std::unique_lock<std::mutex> guard(m_lock);
    std::vector<std::pair<int, std::string>> work;
    for (;;) {
        m_changed.wait(guard, [this] { return m_stopping || !m_waiting.empty(); });
        if (m_waiting.empty()) {
            return;
        }
        work.swap(m_waiting);
        m_busy = true;
        bool good = !m_failed;
        guard.unlock();
        m_changed.notify_all();
        for (const auto& [file, bytes] : work) {
            good = good && writeAll(file, bytes);
        }
        guard.lock();
        for (auto& item : work) {
            item.second.clear();
            m_spare.push_back(std::move(item.second));
        }
        work.clear();
        m_failed = !good;
        m_busy = false;
        m_changed.notify_all();
    }
}

bool BackgroundWriter::write(int file, std::string& buffer)
{
    std::string room;
    {
        std::unique_lock<std::mutex> guard(m_lock);
        m_changed.wait(guard, [this] { return m_waiting.size() < kMostWaiting; });
        if (m_failed) {
            buffer.clear();
            return false;
        }
        m_waiting.emplace_back(file, std::move(buffer));
        if (!m_spare.empty()) {
            room = std::move(m_spare.back());
            m_spare.pop_back();
        }
    }
    m_changed.notify_all();
    buffer = std::move(room);
    return true;
}

bool BackgroundWriter::finish()
{
    std::unique_lock<std::mutex> guard(m_lock);
    m_changed.wait(guard, [this] { return m_waiting.empty() && !m_busy; });
    return !m_failed;
}

} // namespace kerval::helpers
