#include "tests/rest/httpclient.h"

#include <QEventLoop>
#include <QNetworkReply>
#include <QTimer>

#include <memory>

QByteArray HttpReply::header(const QByteArray& name) const
{
    for (const auto& header : headers) {
        if (header.first.toLower() == name.toLower())
            return header.second;
    }
    return QByteArray();
}

HttpClient::HttpClient(quint16 port)
    : m_port(port)
{
}

HttpReply HttpClient::send(const QByteArray& method, const QString& pathAndQuery, const QByteArray& body,
                           const Headers& headers)
{
    QNetworkRequest request(QUrl(QStringLiteral("http://127.0.0.1:%1%2").arg(m_port).arg(pathAndQuery)));
    if (!body.isEmpty())
        request.setHeader(QNetworkRequest::ContentTypeHeader, QByteArrayLiteral("application/json"));
    for (const auto& header : headers)
        request.setRawHeader(header.first, header.second);
    const std::unique_ptr<QNetworkReply> reply(m_manager.sendCustomRequest(request, method, body));
    // Not qWaitFor(): it sleeps between the events, of which a large body takes hundreds.
    QEventLoop loop;
    QObject::connect(reply.get(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
    QTimer::singleShot(30000, &loop, &QEventLoop::quit);
    if (!reply->isFinished())
        loop.exec();
    if (!reply->isFinished())
        qFatal("no answer to %s %s", method.constData(), qPrintable(pathAndQuery));
    return {reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(), reply->readAll(),
            reply->rawHeaderPairs()};
}
