#pragma once

#include <QByteArray>
#include <QNetworkReply>
#include <QObject>
#include <QPointer>
#include <QTimer>

namespace FontRecognizer {

// One answer of the recognition service, complete when finished() is emitted; a reply that was aborted never emits it.
// Replies are handed out as shared pointers that delete later, so one may be dropped from inside its own signal;
// dropping a running one aborts its request.
//
// What an answer may cost is bounded: one longer than 64 MiB counts as unreadable (a letter or picture of 20 MiB fits
// several times), and one that makes no progress for 60 seconds as a network failure, twice what the service may take
// to fetch a picture. Neither is reported as aborted, for the caller is still waiting. GUI thread only.
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

    static constexpr qint64 kLongestAnswer = 64 * 1024 * 1024;
    static constexpr int kPatienceMilliseconds = 60 * 1000;

    FontRecognizerReplyBase();
    ~FontRecognizerReplyBase() override;

    // Success until finished.
    int result() const { return m_result; }
    State state() const { return m_state; }
    // Of the bound request, a value of QNetworkReply::NetworkError.
    int networkError() const { return m_networkError; }
    // Owned by the reply; may be null.
    QNetworkReply* networkReply() const { return m_networkReply; }
    // Of tests, in milliseconds.
    void setPatience(int milliseconds);

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
    void giveUp(int result, int networkError);
    void setState(State state);

    QPointer<QNetworkReply> m_networkReply;
    QTimer m_patience;
    State m_state = Idle;
    int m_result = Success;
    int m_networkError = QNetworkReply::NoError;
};

} // namespace FontRecognizer
