#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QNetworkReply>
#include <QObject>
#include <QPointer>
#include <QTimer>

namespace FontRecognizer {

// One answer of the recognition service, complete when finished() is emitted; a reply that was aborted never emits it.
// Replies are handed out as shared pointers that delete later, so one may be dropped from inside its own signal;
// dropping a running one aborts its request.
//
// What an answer may cost is bounded. One longer than its kind ever is counts as unreadable. One that makes no progress
// for 60 seconds, twice what the service may take to fetch a picture, counts as a network failure, and so does one that
// trickles in for ten minutes; a request that waits for the answers of others to the same client is not late. None of
// these is reported as aborted, for the caller is still waiting. A reply whose client goes away ends as aborted. GUI
// thread only.
class FontRecognizerReplyBase : public QObject
{
    Q_OBJECT

public:
    enum State
    {
        Idle, // no request is bound yet
        Running,
        Finished,
        Aborted
    };
    Q_ENUM(State)

    enum Result
    {
        Success = 0,
        NetworkFailure = 1,
        ParseFailure = 2
    };

    static constexpr int kPatienceMilliseconds = 60 * 1000;
    static constexpr qint64 kLongestWaitMilliseconds = 10 * 60 * 1000;

    // In bytes, after decompression.
    explicit FontRecognizerReplyBase(qint64 longestAnswer);
    ~FontRecognizerReplyBase() override;

    // Success until finished.
    int result() const { return m_result; }
    State state() const { return m_state; }
    // Of the bound request, a value of QNetworkReply::NetworkError.
    int networkError() const { return m_networkError; }
    // Owned by the reply; may be null.
    QNetworkReply* networkReply() const { return m_networkReply; }
    // In milliseconds: without progress, and for the whole answer.
    void setPatience(int withoutProgress, qint64 altogether = kLongestWaitMilliseconds);

signals:
    void stateChanged(State state);
    void finished();

public slots:
    void abort();

protected:
    // Says whether the bytes were understood.
    virtual bool parse(const QByteArray& data) = 0;

    // Takes the request over and follows it.
    void bind(QNetworkReply* networkReply);
    // Ends the reply without a request's help.
    void finish(int result, int networkError);

private slots:
    void onRequestFinished();

private:
    friend class FontRecognizerClient;

    void onReadyRead();
    void onRequestDestroyed();
    void giveUp(int result, int networkError);
    void setState(State state);

    QPointer<QNetworkReply> m_networkReply;
    const qint64 m_longestAnswer;
    QTimer m_patience;
    qint64 m_longestWait = kLongestWaitMilliseconds;
    QElapsedTimer m_sinceFirstBytes;
    State m_state = Idle;
    int m_result = Success;
    int m_networkError = QNetworkReply::NoError;
};

} // namespace FontRecognizer
