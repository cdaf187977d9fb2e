#pragma once

#include "rest/http/FMSRequest.h"

#include <QAbstractSocket>
#include <QByteArray>
#include <QHash>
#include <QObject>
#include <QPointer>

class QTcpServer;
class QTcpSocket;

// The request interface that came before the REST server, over plain TCP. A client sends one request, as
// "GET /?name=value&...", as a POST with the same fields in its body, or as a REQUEST element of XML. It is
// acknowledged at once, unless its type is LISTEN: then it stays connected, and the receiver gets a posted
// NewRequestEvent.
//
// Nothing of the service creates one; who does so listens with the server. Memory and sockets are bounded: 1 MiB of
// unprocessed bytes for each client, 64 clients, and clients other than LISTEN ones leave after 60 s without a byte.
class FMSTcpServerWorker : public QObject
{
    Q_OBJECT

public:
    struct Limits
    {
        int bufferBytes = 1024 * 1024;
        int idleMilliseconds = 60 * 1000;
        int clients = 64;
    };

    // Neither the server nor the receiver is owned; the receiver may go earlier.
    FMSTcpServerWorker(QTcpServer* server, QObject* receiver, QObject* parent = nullptr);
    ~FMSTcpServerWorker() override;

    void setLimits(const Limits& limits) { m_limits = limits; }
    // The LISTEN requests whose clients are still connected, by connection id.
    const QHash<QString, fms::FMSRequest>& pendingRequests() const { return m_pendingRequests; }

public slots:
    void onNewConnection();
    void onSocketReadyRead();
    void onSocketDisconnected();
    void onSocketError(QAbstractSocket::SocketError socketError);

private:
    void addSocket(QTcpSocket* socket);
    void onSocketIdle(QTcpSocket* socket);
    // False while more bytes are needed. `request` holds what was read otherwise; `valid` whether it can be used.
    static bool readRequest(const QByteArray& buffer, fms::FMSRequest& request, bool& valid);
    void dispatch(QTcpSocket* socket, const fms::FMSRequest& request);

    QPointer<QTcpServer> m_server;
    QPointer<QObject> m_receiver;
    Limits m_limits;
    QHash<QTcpSocket*, QByteArray> m_buffers;
    QHash<QString, fms::FMSRequest> m_pendingRequests;
};
