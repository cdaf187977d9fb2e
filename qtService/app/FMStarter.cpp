#include "qtService/app/FMStarter.h"

#include <QCoreApplication>
#include <QHostAddress>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QNetworkRequest>

namespace {

// The service answers after it has made its window, which can take a moment; longer than this it is stuck.
constexpr int patienceMs = 15000;

} // namespace

FMStarter::FMStarter(QObject* parent)
    : QObject(parent)
{
    m_network.setProxy(QNetworkProxy::NoProxy);
}

void FMStarter::launchFontManager(int port)
{
    QUrl url;
    url.setScheme(QStringLiteral("http"));
    url.setHost(QHostAddress(QHostAddress::LocalHost).toString());
    url.setPort(port);
    url.setPath(QStringLiteral("/service/launchFontManager"));
    QNetworkRequest request(url);
    request.setHeader(QNetworkRequest::ContentTypeHeader, QStringLiteral("text/json"));
    request.setTransferTimeout(patienceMs);
    m_reply = m_network.post(request, QByteArray());
    connect(m_reply, &QNetworkReply::finished, this, &FMStarter::onRequestFinished);
}

void FMStarter::onRequestFinished()
{
    m_reply->deleteLater();
    m_reply = nullptr;
    QCoreApplication::quit();
}
