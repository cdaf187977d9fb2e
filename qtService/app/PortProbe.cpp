#include "qtService/app/PortProbe.h"

#include <QEventLoop>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QTcpSocket>
#include <QTimer>

namespace krv {

namespace {

constexpr int connectPatienceMs = 2000;
constexpr int answerPatienceMs = 5000;
// The service's own description is some hundred bytes; a foreign program may send without end.
constexpr qint64 maximumAnswer = 64 * 1024;

} // namespace

bool isPortInUse(const QHostAddress& address, int port)
{
    QTcpSocket socket;
    socket.setProxy(QNetworkProxy::NoProxy);
    socket.connectToHost(address, quint16(port));
    return socket.waitForConnected(connectPatienceMs) && socket.state() != QAbstractSocket::UnconnectedState;
}

RunningService queryRunningService(int port)
{
    QNetworkAccessManager network;
    network.setProxy(QNetworkProxy::NoProxy);
    QUrl url;
    url.setScheme(QStringLiteral("http"));
    url.setHost(QHostAddress(QHostAddress::LocalHost).toString());
    url.setPort(port);
    url.setPath(QStringLiteral("/service"));
    const QScopedPointer<QNetworkReply> reply(network.get(QNetworkRequest(url)));

    // One limit over the whole exchange: a trickle of bytes is no answer either.
    QEventLoop loop;
    QObject::connect(reply.data(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
    QObject::connect(reply.data(), &QNetworkReply::downloadProgress, &loop, [&loop](qint64 received, qint64) {
        if (received > maximumAnswer)
            loop.quit();
    });
    QTimer::singleShot(answerPatienceMs, &loop, &QEventLoop::quit);
    loop.exec();

    RunningService service;
    if (!reply->isFinished())
        return service;
    const QJsonObject description = QJsonDocument::fromJson(reply->readAll()).object();
    if (!description.value(QLatin1String("user_id")).isString())
        return service;
    service.answered = true;
    service.userId = description.value(QLatin1String("user_id")).toString();
    service.version = description.value(QLatin1String("version")).toInt(-1);
    return service;
}

} // namespace krv
