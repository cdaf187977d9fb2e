#pragma once

#include <QObject>
#include <QSharedPointer>
#include <QThreadPool>

#include <functional>
#include <memory>

class AbstractAsynchronousCommand;

namespace api::rest {

// Work that a request waits for while the main thread goes on. What was begun is always done, whether or not the client
// stays: `done` is called on the main thread, once, now or later, for as long as somebody holds what is returned. The
// work itself and what it captured are dropped on the main thread too, the latest when this object goes, which waits
// for it.
//
// A wait in an event loop would not do: of requests that wait inside one another, the first is held up by the last.
class PendingWork : public QObject
{
    Q_OBJECT

public:
    using Done = std::function<void(bool succeeded)>;

    explicit PendingWork(QObject* parent = nullptr);
    ~PendingWork() override;

    // Starts the command, which succeeds by finishing: not by failing nor by being cancelled.
    std::shared_ptr<void> runCommand(const QSharedPointer<AbstractAsynchronousCommand>& command, const Done& done);

    // Work whose cost grows with a number of fonts: at once for a few, in the background for so many that the window
    // would stutter.
    std::shared_ptr<void> runForFonts(int fontCount, const std::function<void()>& work, const Done& done);

private:
    class Command;
    class Job;

    // Not the common pool, where commands may wait for each other and for the disk.
    QThreadPool m_pool;
};

} // namespace api::rest
