#include "rest/PendingWork.h"

#include "qtService/app/core/AbstractAsynchronousCommand.h"

#include <QDebug>
#include <QFutureWatcher>
#include <QtConcurrentRun>

#include <exception>

namespace api::rest {

namespace {

constexpr int manyFonts = 1000;
// More than processors: a page shall not wait until the long lists of other clients are made.
constexpr int jobsAtOnce = 8;

bool hasEnded(AbstractAsynchronousCommand::State state)
{
    return state == AbstractAsynchronousCommand::Finished || state == AbstractAsynchronousCommand::Failed ||
           state == AbstractAsynchronousCommand::Cancelled;
}

} // namespace

// Holds a command until it has ended.
class PendingWork::Command : public QObject
{
public:
    Command(const QSharedPointer<AbstractAsynchronousCommand>& command, const std::weak_ptr<Done>& asked,
            QObject* parent)
        : QObject(parent)
        , m_command(command)
        , m_asked(asked)
    {
        connect(m_command.data(), &AbstractAsynchronousCommand::stateChanged, this, &Command::onStateChanged);
    }

private:
    void onStateChanged(AbstractAsynchronousCommand::State state)
    {
        if (!hasEnded(state))
            return;
        m_command->disconnect(this);
        deleteLater();
        if (const auto done = m_asked.lock())
            (*done)(state == AbstractAsynchronousCommand::Finished);
    }

    const QSharedPointer<AbstractAsynchronousCommand> m_command;
    const std::weak_ptr<Done> m_asked;
};

class PendingWork::Job : public QObject
{
public:
    Job(const std::function<void()>& work, const std::weak_ptr<Done>& asked, QThreadPool* pool, QObject* parent)
        : QObject(parent)
        , m_work(work)
        , m_asked(asked)
    {
        connect(&m_running, &QFutureWatcher<bool>::finished, this, &Job::onFinished);
        m_running.setFuture(QtConcurrent::run(pool, [this] { return run(); }));
    }

    ~Job() override { m_running.waitForFinished(); }

private:
    bool run() const
    {
        try {
            m_work();
            return true;
        } catch (const std::exception& error) {
            // An answer too large for the memory must not end the service.
            qWarning() << "E_0_"
                       << "A request failed:" << error.what();
            return false;
        }
    }

    void onFinished()
    {
        deleteLater();
        if (const auto done = m_asked.lock())
            (*done)(m_running.result());
    }

    const std::function<void()> m_work;
    const std::weak_ptr<Done> m_asked;
    QFutureWatcher<bool> m_running;
};

PendingWork::PendingWork(QObject* parent)
    : QObject(parent)
{
    m_pool.setMaxThreadCount(jobsAtOnce);
}

PendingWork::~PendingWork()
{
    // Before the pool that they run in.
    qDeleteAll(findChildren<QObject*>(QString(), Qt::FindDirectChildrenOnly));
}

std::shared_ptr<void> PendingWork::runCommand(const QSharedPointer<AbstractAsynchronousCommand>& command,
                                              const Done& done)
{
    const auto asked = std::make_shared<Done>(done);
    new Command(command, asked, this);
    command->start();
    return asked;
}

std::shared_ptr<void> PendingWork::runForFonts(int fontCount, const std::function<void()>& work, const Done& done)
{
    if (fontCount <= manyFonts) {
        work();
        done(true);
        return nullptr;
    }
    const auto asked = std::make_shared<Done>(done);
    new Job(work, asked, &m_pool, this);
    return asked;
}

} // namespace api::rest
