#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <QUrl>

class QNetworkAccessManager;
class QNetworkReply;

// Asks the update server whether a newer release exists: one GET of "/update2/update.json" from the host that
// "[Updates] Host" of settings.ini names, without which every check fails. Lives in one thread with an event loop.
//
// Versions are compared as plain text, as the server expects: 2.10.0 counts as older than 2.7.1. The document is read
// as JSON, never evaluated: it comes over an unprotected connection.
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
    ~ApplicationUpdateChecker() override;

    void checkForUpdates();
    // Says CheckFailed for a request in flight, then CheckCancelled.
    void cancel();

signals:
    void updateCheckFinished(ApplicationUpdateChecker::UpdateDescription updateDescription);

private slots:
    void onRequestFinished(QNetworkReply* reply);

private:
    QNetworkAccessManager* m_network;
    QPointer<QNetworkReply> m_reply;
};

Q_DECLARE_METATYPE(ApplicationUpdateChecker::UpdateDescription)
