#pragma once

#include <QObject>
#include <QThreadPool>

#include <atomic>
#include <functional>
#include <memory>
#include <vector>

namespace kerval::recognizer {

// Work of the recogniser on threads of its own: the program's common pool may be full of long commands, and somebody
// waits at a window for this. Bounded: beyond a number of jobs in all new ones are refused.
//
// Lives on the main thread. Destroying it cancels everything and waits for what runs.
class JobQueue : public QObject
{
    Q_OBJECT

public:
    using Cancelled = std::atomic<bool>;
    // The end of a job, run on the main thread; not when the job has been cancelled.
    using Done = std::function<void()>;
    // Runs on a thread of the queue and looks at the flag where it takes long.
    using Work = std::function<Done(const Cancelled& cancelled)>;
    enum Priority
    {
        Background,
        Waited // somebody cannot go on without it
    };

    explicit JobQueue(int maximumJobs, QObject* parent = nullptr);
    ~JobQueue() override;

    // Null when there are too many. Dropping what is returned cancels the job; `failed` takes the place of the end when
    // the work throws.
    std::shared_ptr<void> add(const Work& work, const Done& failed, Priority priority = Background);
    int jobs() const { return m_jobs; }

private:
    struct Job;

    QThreadPool m_pool;
    std::vector<std::weak_ptr<Job>> m_known;
    const int m_maximumJobs;
    int m_jobs = 0;
};

} // namespace kerval::recognizer
