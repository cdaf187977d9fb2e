#include "fontlens/letters/WorkSharing.h"

#include <QSemaphore>
#include <QThreadPool>

#include <atomic>

namespace kerval::letters {

void shareWork(QThreadPool* pool, int count, const std::function<void(int)>& work)
{
    std::atomic<int> next{0};
    const auto run = [&next, &work, count] {
        for (int i = next++; i < count; i = next++)
            work(i);
    };
    const int helpers = pool ? qMin(pool->maxThreadCount(), count) - 1 : 0;
    QSemaphore done;
    int started = 0;
    for (int i = 0; i < helpers; ++i) {
        // A busy pool must not make this wait for another's work: whoever is free takes part.
        auto* task = QRunnable::create([&run, &done] {
            run();
            done.release();
        });
        if (pool->tryStart(task))
            ++started;
        else
            delete task;
    }
    run();
    done.acquire(started);
}

} // namespace kerval::letters
