#pragma once

#include <QByteArray>
#include <QJsonDocument>
#include <QList>
#include <QNetworkAccessManager>
#include <QPair>
#include <QString>

// What a plug-in sees of one answer.
struct HttpReply
{
    int status = 0;
    QByteArray body;
    QList<QPair<QByteArray, QByteArray>> headers;

    QByteArray header(const QByteArray& name) const;
    QJsonDocument json() const { return QJsonDocument::fromJson(body); }
};

// Talks to a server on this machine, waiting for each answer with the events running.
class HttpClient
{
public:
    explicit HttpClient(quint16 port);

    using Headers = QList<QPair<QByteArray, QByteArray>>;
    // The path may carry a query; both already percent-encoded where needed.
    HttpReply send(const QByteArray& method, const QString& pathAndQuery, const QByteArray& body = QByteArray(),
                   const Headers& headers = {});
    HttpReply get(const QString& pathAndQuery) { return send("GET", pathAndQuery); }

private:
    quint16 m_port;
    QNetworkAccessManager m_manager;
};
