#pragma once

#include <QNetworkAccessManager>
#include <QObject>

class QNetworkReply;

// Asks a running service over HTTP to open its window, and ends the application's event loop when the service has
// answered or cannot be reached; the outcome does not matter to the launcher.
class FMStarter : public QObject
{
    Q_OBJECT

public:
    explicit FMStarter(QObject* parent = nullptr);

    void launchFontManager(int port);

private slots:
    void onRequestFinished();

private:
    QNetworkAccessManager m_network;
    QNetworkReply* m_reply = nullptr;
};
