#include "fontlens/recognizer/JobQueue.h"

#include <QDebug>
#include <QThread>

#include <algorithm>
#include <exception>

namespace kerval::recognizer {

struct JobQueue::Job
{
    Work work;
    Done failed;
    Cancelled cancelled{false};
};

JobQueue::JobQueue(int maximumJobs, QObject* parent)
    : QObject(parent)
    , m_maximumJobs(maximumJobs)
{
    m_pool.setMaxThreadCount(qBound(2, QThread::idealThreadCount(), 4));
    m_pool.setExpiryTimeout(10000);
}

JobQueue::~JobQueue()
{
    for (const std::weak_ptr<Job>& known : m_known) {
        if (const auto job = known.lock())
            job->cancelled = true;
    }
    m_pool.clear();
    m_pool.waitForDone();
}

std::shared_ptr<void> JobQueue::add(const Work& work, const Done& failed, Priority priority)
{
    if (m_jobs == m_maximumJobs)
        return nullptr;
    m_known.erase(std::remove_if(m_known.begin(), m_known.end(), [](const auto& known) { return known.expired(); }),
                  m_known.end());
    auto job = std::make_shared<Job>();
    job->work = work;
    job->failed = failed;
    m_known.push_back(job);
    ++m_jobs;
    m_pool.start(
        [this, job] {
            Done done;
            try {
                if (!job->cancelled)
                    done = job->work(job->cancelled);
            } catch (const std::exception& error) {
                qWarning() << "E_0_"
                           << "A job of the font recognition failed:" << error.what();
                done = job->failed;
            }
            QMetaObject::invokeMethod(
                this,
                [this, job, done] {
                    --m_jobs;
                    if (done && !job->cancelled)
                        done();
                },
                Qt::QueuedConnection);
        },
        int(priority));
    return std::shared_ptr<void>(job.get(), [job](void*) { job->cancelled = true; });
}

} // namespace kerval::recognizer
