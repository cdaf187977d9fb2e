#include "helpers/extractfeatures/BackgroundWriter.h"

#include <utility>

namespace kerval::helpers {

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
    for (;;) {
        m_changed.wait(guard, [this] { return m_stopping || m_work; });
        if (!m_work) {
            return;
        }
        guard.unlock();
        const bool good = m_work();
        guard.lock();
        m_failed = m_failed || !good;
        m_work = nullptr;
        m_changed.notify_all();
    }
}

bool BackgroundWriter::start(std::function<bool()> work)
{
    {
        std::unique_lock<std::mutex> guard(m_lock);
        m_changed.wait(guard, [this] { return !m_work; });
        if (m_failed) {
            return false;
        }
        m_work = std::move(work);
    }
    m_changed.notify_all();
    return true;
}

bool BackgroundWriter::finish()
{
    std::unique_lock<std::mutex> guard(m_lock);
    m_changed.wait(guard, [this] { return !m_work; });
    return !m_failed;
}

} // namespace kerval::helpers
