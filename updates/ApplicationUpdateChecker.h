#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <QUrl>

#include <memory>

class QNetworkAccessManager;
class QNetworkReply;
class QThread;

// Asks the update server whether a newer release exists: one GET of "/update2/update.json" from the host that
// "[Updates] Host" of settings.ini names, without which every check fails. Lives in one thread with an event loop.
//
// Versions are compared as plain text, as the server expects: 2.10.0 counts as older than 2.7.1. The document comes
// over an unprotected connection: at most 64 KiB of it are read, a redirection to another scheme is not followed, and
// it is evaluated in a thread of its own, where a second is all it gets.
class ApplicationUpdateChecker : public QObject
{
    Q_OBJECT

public:
    enum Status
    {
        NoUpdate = 0,
        UpdateAvailable = 1,
        CheckFailed = 2,
        CheckCancelled = 3
    };

    struct UpdateDescription
    {
        QString version;
        QUrl url;
        int status = NoUpdate;
    };

    explicit ApplicationUpdateChecker(QObject* parent = nullptr);
    // Waits for a document that is being evaluated.
    ~ApplicationUpdateChecker() override;

    void checkForUpdates();
    // Says CheckFailed for a request in flight, then CheckCancelled.
    void cancel();

signals:
    void updateCheckFinished(ApplicationUpdateChecker::UpdateDescription updateDescription);

private slots:
    void onRequestFinished(QNetworkReply* reply);

private:
    void evaluate(const QByteArray& body);
    void finish(int status);

    QNetworkAccessManager* m_network;
    QPointer<QNetworkReply> m_reply;
    std::unique_ptr<QThread> m_evaluation;
};

Q_DECLARE_METATYPE(ApplicationUpdateChecker::UpdateDescription)
