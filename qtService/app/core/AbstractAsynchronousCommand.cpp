#include "qtService/app/core/AbstractAsynchronousCommand.h"

#include <QtConcurrentRun>

AbstractAsynchronousCommand::AbstractAsynchronousCommand(int progressTotal)
    : m_progressTotal(progressTotal)
{
    qRegisterMetaType<AbstractAsynchronousCommand::State>("AbstractAsynchronousCommand::State");
}

AbstractAsynchronousCommand::~AbstractAsynchronousCommand()
{
    m_future.waitForFinished();
}

AbstractAsynchronousCommand::State AbstractAsynchronousCommand::state() const
{
    QReadLocker locker(&m_lock);
    return m_state;
}

int AbstractAsynchronousCommand::progressTotal() const
{
    QReadLocker locker(&m_lock);
    return m_progressTotal;
}

int AbstractAsynchronousCommand::progressCurrent() const
{
    QReadLocker locker(&m_lock);
    return m_progressCurrent;
}

void AbstractAsynchronousCommand::start()
{
    m_future = QtConcurrent::run([this] { (*this)(); });
}

void AbstractAsynchronousCommand::cancel()
{
    setState(Cancelled);
}

void AbstractAsynchronousCommand::waitForFinished()
{
    m_future.waitForFinished();
}

void AbstractAsynchronousCommand::setState(State state)
{
    {
        // One step under the write lock: a cancel() that comes between a worker's look and its store must not be lost,
        // because no transition leaves Cancelled.
        QWriteLocker locker(&m_lock);
        if (m_state == state || m_state == Cancelled)
            return;
        m_state = state;
    }
    emit stateChanged(state);
}

void AbstractAsynchronousCommand::setProgressTotal(int total)
{
    {
        QWriteLocker locker(&m_lock);
        if (m_progressTotal == total)
            return;
        m_progressTotal = total;
    }
    emit progressChanged(total, total);
}

void AbstractAsynchronousCommand::setProgressCurrent(int current)
{
    int total = 0;
    {
        QWriteLocker locker(&m_lock);
        if (m_progressCurrent == current)
            return;
        m_progressCurrent = current;
        total = m_progressTotal;
    }
    emit progressChanged(total, current);
}
