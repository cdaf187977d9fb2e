#include "qtService/app/core/AbstractAsynchronousCommand.h"
#include "tests/support/testregistry.h"

#include <QSemaphore>
#include <QSignalSpy>
#include <QtTest>

namespace {

using Command = AbstractAsynchronousCommand;

// Works through its steps, one for each release of the gate.
class SteppingCommand : public Command
{
public:
    explicit SteppingCommand(int steps, bool fails = false)
        : Command(steps)
        , m_fails(fails)
    {
    }
    ~SteppingCommand() override
    {
        gate.release(100);
        waitForFinished();
    }

    QSemaphore gate;
    std::atomic<int> done{0};

    void report(int current, int total)
    {
        setProgressCurrent(current);
        setProgressTotal(total);
    }

protected:
    void operator()() override
    {
        if (state() == Cancelled)
            return;
        setState(Running);
        for (int i = 0; i < progressTotal(); ++i) {
            gate.acquire();
            if (state() == Cancelled)
                return;
            setProgressCurrent(++done);
        }
        setState(m_fails ? Failed : Finished);
    }

private:
    bool m_fails;
};

QList<int> states(const QSignalSpy& spy)
{
    QList<int> list;
    for (const QList<QVariant>& arguments : spy)
        list.append(arguments.at(0).value<Command::State>());
    return list;
}

} // namespace

class AbstractAsynchronousCommandTest : public QObject
{
    Q_OBJECT

private slots:
    void runsToItsEnd_data()
    {
        QTest::addColumn<bool>("fails");
        QTest::addColumn<int>("end");
        QTest::newRow("finishes") << false << int(Command::Finished);
        QTest::newRow("fails") << true << int(Command::Failed);
    }

    void runsToItsEnd()
    {
        QFETCH(bool, fails);
        QFETCH(int, end);
        SteppingCommand command(3, fails);
        QSignalSpy stateSpy(&command, &Command::stateChanged);
        QSignalSpy progressSpy(&command, &Command::progressChanged);
        command.gate.release(3);
        command.start();
        command.waitForFinished();
        QCOMPARE(states(stateSpy), (QList<int>{Command::Running, end}));
        QCOMPARE(progressSpy.count(), 3);
        QCOMPARE(command.progressCurrent(), 3);
    }

    void cancelBeforeStartDoesNothingElse()
    {
        SteppingCommand command(1);
        QSignalSpy spy(&command, &Command::stateChanged);
        command.cancel();
        command.cancel();
        command.gate.release();
        command.start();
        command.waitForFinished();
        QCOMPARE(states(spy), QList<int>{Command::Cancelled});
        QCOMPARE(command.done.load(), 0);
    }

    void nothingLeavesCancelled()
    {
        SteppingCommand command(2);
        QSignalSpy spy(&command, &Command::stateChanged);
        command.start();
        command.gate.release();
        QTRY_COMPARE(command.done.load(), 1);
        command.cancel();
        command.gate.release();
        command.waitForFinished();
        QCOMPARE(command.state(), Command::Cancelled);
        QCOMPARE(states(spy), (QList<int>{Command::Running, Command::Cancelled}));
    }

    void cancelAfterTheEndStillCounts()
    {
        SteppingCommand command(0);
        command.start();
        command.waitForFinished();
        QCOMPARE(command.state(), Command::Finished);
        QSignalSpy spy(&command, &Command::stateChanged);
        command.cancel();
        QCOMPARE(states(spy), QList<int>{Command::Cancelled});
    }

    void progressIsReportedOnChangeOnly()
    {
        SteppingCommand command(5);
        QSignalSpy spy(&command, &Command::progressChanged);
        command.report(0, 5);
        QCOMPARE(spy.count(), 0);
        command.report(2, 10);
        QCOMPARE(spy.count(), 2);
        QCOMPARE(spy.at(0), (QList<QVariant>{5, 2}));
        QCOMPARE(spy.at(1), (QList<QVariant>{10, 10}));
    }
};

KERVAL_TEST(AbstractAsynchronousCommandTest)
#include "AbstractAsynchronousCommandTest.moc"
