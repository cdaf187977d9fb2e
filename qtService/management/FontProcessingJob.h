#pragma once

#include "qtService/app/core/AbstractAsynchronousCommand.h"

#include <QHash>
#include <QProcess>
#include <QTimer>

// Has the adder program analyse one face: one process, driven by its signals in the thread that starts the job; the
// thread pool is not used. A process that crashes, takes too long or exits with an error is started anew up to
// `maxRetries` times; output that makes no sense fails at once. No signal comes out of start() itself except the one
// that says Running: an adder that cannot be started fails through the event loop, like one that crashed.
class FontProcessingJob : public AbstractAsynchronousCommand
{
    Q_OBJECT

public:
    enum Error
    {
        NoError = 0,
        Crashed = 1,
        TimedOut = 2,
        NonZeroExit = 3,
        MalformedOutput = 4
    };
    Q_ENUM(Error)

    FontProcessingJob(const QString& adderExecutable, const QString& fileName, int faceIndex, int timeoutSeconds,
                      int maxRetries);
    ~FontProcessingJob() override;

    void start() override;
    // Blocks until the last process has ended, without any event loop; the signals are emitted on the way.
    void waitForFinished() override;

    QString fileName() const { return m_fileName; }
    int faceIndex() const { return m_faceIndex; }
    int error() const;
    int exitCode() const;
    QHash<QString, QString> fontInfo() const;
    // Character code -> 61 values.
    QHash<int, QList<float>> features() const;

private slots:
    void onProcessFinished(int exitCode, QProcess::ExitStatus status);
    void onStartFailed();
    void onCompletionTimeout();

protected:
    void operator()() override;

private:
    void fail(int error);
    void retryOrFail(int error);

    const QString m_adderExecutable;
    const QString m_options;
    const QString m_fileName;
    const int m_faceIndex;
    QSharedPointer<QProcess> m_process;
    QSharedPointer<QTimer> m_timer;
    const int m_timeoutSeconds;
    const int m_maxRetries;
    int m_retryCount = 0;
    int m_exitCode = 0;
    bool m_killed = false;
    int m_error = NoError;
    QHash<QString, QString> m_fontInfo;
    QHash<int, QList<float>> m_features;
};
