#pragma once

#include <QList>
#include <QObject>
#include <QReadWriteLock>
#include <QSharedPointer>
#include <QString>

// One PDF document in the making: what is asked for, how far it is, and the way to stop it. Any thread may read it and
// cancel it; the worker that makes the document writes it. Signals come from the writing thread, with no lock held.
//
// NotStarted -> Running -> Finished, also after a cancellation that the worker noticed, in which case no file was
// written; a job that could not be started at all stays in Cancelled.
class FontSampleJob : public QObject
{
    Q_OBJECT

public:
    enum State
    {
        NotStarted = 0,
        Running = 1,
        Finished = 2,
        Cancelled = 3
    };
    Q_ENUM(State)

    FontSampleJob(const QString& saveFileName, const QString& sampleText, const QList<int>& fontIdList);

    QString saveFileName() const;
    QString sampleText() const;
    QList<int> fontIdList() const;
    int fontCount() const;
    State state() const;
    bool isCancelled() const;
    int finishedFontCount() const;
    int progressTotal() const;
    int progressCurrent() const;
    int errorCode() const;

    // A job that was cancelled before its worker began does not come to life: Running is refused then.
    void setState(State state);
    void setFinishedFontCount(int count);
    void setProgressTotal(int total);
    void setProgressCurrent(int current);
    void setErrorCode(int code);

public slots:
    void cancelJob();

signals:
    void stateChanged(FontSampleJob::State state);
    void finishedFontCountChanged(int totalFontCount, int finishedFontCount);
    void progressCurrentChanged(int progressTotal, int progressCurrent);

private:
    mutable QReadWriteLock m_lock;
    const QString m_saveFileName;
    const QString m_sampleText;
    const QList<int> m_fontIdList;
    int m_finishedFontCount = 0;
    int m_errorCode = 0;
    State m_state = NotStarted;
    int m_progressTotal = 0;
    int m_progressCurrent = 0;
};

using FontSampleJobPtr = QSharedPointer<FontSampleJob>;

Q_DECLARE_METATYPE(FontSampleJobPtr)
