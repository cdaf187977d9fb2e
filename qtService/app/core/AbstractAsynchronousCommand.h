#pragma once

#include <QFuture>
#include <QObject>
#include <QReadWriteLock>
#include <QSharedPointer>

// The unit of background work. A command is built, connected, started once and read through its own accessors after
// stateChanged(Finished). It runs on the global thread pool; its signals are emitted from whichever thread changes the
// value, so receivers on other threads get them queued, in order.
//
// What every operator() keeps to:
//   1. in state Cancelled return at once, touching nothing;
//   2. setState(Running);
//   3. between steps look at state(): when Cancelled, finish or undo the half-done step and return, state untouched;
//   4. count with setProgressCurrent();
//   5. on an error setState(Failed), keeping the reason in a member of its own;
//   6. store results under m_lock, then setState(Finished) last.
// No exception may leave operator(): the pool would swallow it and the state would stay Running.
class AbstractAsynchronousCommand : public QObject
{
    Q_OBJECT

public:
    enum State
    {
        Idle = 0,
        Running = 1,
        Finished = 2,
        Failed = 3,
        Cancelled = 4
    };
    Q_ENUM(State)

    explicit AbstractAsynchronousCommand(int progressTotal = 0);
    // Blocks until a run in progress has returned. By then a subclass's members are gone: a subclass whose operator()
    // uses members calls waitForFinished() in its own destructor.
    ~AbstractAsynchronousCommand() override;

    State state() const;
    int progressTotal() const;
    int progressCurrent() const;

    // Runs operator() on the global thread pool. Does not look at the state: a second call runs the work twice.
    virtual void start();
    // Moves any state to Cancelled and says so once; never interrupts the worker, which notices at its next step.
    virtual void cancel();

protected:
    virtual void operator()() = 0;

public:
    // Blocks until the run on the pool has returned.
    virtual void waitForFinished();

signals:
    void stateChanged(AbstractAsynchronousCommand::State state);
    // After a change of the total both arguments carry the new total.
    void progressChanged(int progressTotal, int progressCurrent);

protected:
    void setState(State state);
    void setProgressTotal(int total);
    void setProgressCurrent(int current);

    // Guards state and progress here and, by convention, the results of subclasses. Never held while emitting.
    mutable QReadWriteLock m_lock;

private:
    State m_state = Idle;
    int m_progressTotal;
    int m_progressCurrent = 0;
    QFuture<void> m_future;
};

using AbstractAsynchronousCommandPtr = QSharedPointer<AbstractAsynchronousCommand>;
