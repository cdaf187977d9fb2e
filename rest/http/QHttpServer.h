#pragma once

#include "rest/http/HttpLimits.h"

#include <QHostAddress>
#include <QObject>
#include <QPointer>

class QHttpConnection;
class QHttpRequest;
class QHttpResponse;
class QTcpServer;

// Accepts connections and announces each request when its headers have arrived; whoever takes newRequest() must end the
// response sooner or later. Everything happens in the thread that owns the server.
class QHttpServer : public QObject
{
    Q_OBJECT

public:
    explicit QHttpServer(QObject* parent = nullptr);
    ~QHttpServer() override;

    // Hold for connections accepted from now on.
    void setLimits(const HttpLimits& limits) { m_limits = limits; }

    bool listen(const QHostAddress& address, quint16 port);
    // On every interface of the machine.
    bool listen(quint16 port);
    void close();
    // 0 while not listening.
    quint16 serverPort() const;

    // Empty for a code without a phrase of its own.
    static QString reasonPhrase(int statusCode);

signals:
    void newRequest(QHttpRequest* request, QHttpResponse* response);

private slots:
    void newConnection();

private:
    bool makeRoom();

    QPointer<QTcpServer> m_tcpServer;
    HttpLimits m_limits;
};
