#include "rest/waiting.h"

#include "qtService/app/core/AbstractAsynchronousCommand.h"

#include <QEventLoop>
#include <QFutureWatcher>
#include <QtConcurrentRun>

#include <exception>

namespace api::rest {

namespace {

constexpr int manyFonts = 1000;
constexpr int ended = 1; // loops that return anything else were left because the program quits

bool hasEnded(AbstractAsynchronousCommand::State state)
{
    return state == AbstractAsynchronousCommand::Finished || state == AbstractAsynchronousCommand::Failed ||
           state == AbstractAsynchronousCommand::Cancelled;
}

} // namespace

bool runCommand(AbstractAsynchronousCommand& command)
{
    QEventLoop loop;
    QObject::connect(&command, &AbstractAsynchronousCommand::stateChanged, &loop,
                     [&loop](AbstractAsynchronousCommand::State state) {
                         if (hasEnded(state))
                             loop.exit(ended);
                     });
    command.start();
    // An end that was announced before the loop runs has either changed the state already or is waiting as an event.
    while (!hasEnded(command.state())) {
        if (loop.exec() != ended)
            break;
    }
    return command.state() == AbstractAsynchronousCommand::Finished;
}

void runInBackground(const std::function<void()>& work)
{
    std::exception_ptr failure;
    QFutureWatcher<void> watcher;
    QEventLoop loop;
    QObject::connect(&watcher, &QFutureWatcher<void>::finished, &loop, [&loop] { loop.exit(ended); });
    watcher.setFuture(QtConcurrent::run([&] {
        try {
            work();
        } catch (...) {
            failure = std::current_exception();
        }
    }));
    if (!watcher.isFinished())
        loop.exec();
    watcher.waitForFinished();
    if (failure)
        std::rethrow_exception(failure);
}

void runForFonts(int fontCount, const std::function<void()>& work)
{
    if (fontCount > manyFonts)
        runInBackground(work);
    else
        work();
}

} // namespace api::rest
