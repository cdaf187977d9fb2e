#include "fontfile/sheets/FontSampleJob.h"

FontSampleJob::FontSampleJob(const QString& saveFileName, const QString& sampleText, const QList<int>& fontIdList)
    : m_saveFileName(saveFileName)
    , m_sampleText(sampleText)
    , m_fontIdList(fontIdList)
{
    qRegisterMetaType<FontSampleJob::State>("FontSampleJob::State");
}

QString FontSampleJob::saveFileName() const
{
    return m_saveFileName;
}

QString FontSampleJob::sampleText() const
{
    return m_sampleText;
}

QList<int> FontSampleJob::fontIdList() const
{
    return m_fontIdList;
}

int FontSampleJob::fontCount() const
{
    return m_fontIdList.size();
}

FontSampleJob::State FontSampleJob::state() const
{
    QReadLocker locker(&m_lock);
    return m_state;
}

bool FontSampleJob::isCancelled() const
{
    return state() == Cancelled;
}

int FontSampleJob::finishedFontCount() const
{
    QReadLocker locker(&m_lock);
    return m_finishedFontCount;
}

int FontSampleJob::progressTotal() const
{
    QReadLocker locker(&m_lock);
    return m_progressTotal;
}

int FontSampleJob::progressCurrent() const
{
    QReadLocker locker(&m_lock);
    return m_progressCurrent;
}

int FontSampleJob::errorCode() const
{
    QReadLocker locker(&m_lock);
    return m_errorCode;
}

void FontSampleJob::setState(State state)
{
    {
        QWriteLocker locker(&m_lock);
        if (m_state == Cancelled && state == Running)
            return;
        m_state = state;
    }
    emit stateChanged(state);
}

void FontSampleJob::setFinishedFontCount(int count)
{
    {
        QWriteLocker locker(&m_lock);
        m_finishedFontCount = count;
    }
    emit finishedFontCountChanged(fontCount(), count);
}

void FontSampleJob::setProgressTotal(int total)
{
    QWriteLocker locker(&m_lock);
    m_progressTotal = total;
}

void FontSampleJob::setProgressCurrent(int current)
{
    int total = 0;
    {
        QWriteLocker locker(&m_lock);
        m_progressCurrent = current;
        total = m_progressTotal;
    }
    emit progressCurrentChanged(total, current);
}

void FontSampleJob::setErrorCode(int code)
{
    QWriteLocker locker(&m_lock);
    m_errorCode = code;
}

void FontSampleJob::cancelJob()
{
    setState(Cancelled);
}
