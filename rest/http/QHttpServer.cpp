#include "rest/http/QHttpServer.h"

#include "rest/http/QHttpConnection.h"
#include "rest/http/QHttpRequest.h"
#include "rest/http/QHttpResponse.h"

#include <QHash>
#include <QTcpServer>
#include <QTcpSocket>

namespace {

const QHash<int, QString>& reasonPhrases()
{
    static const QHash<int, QString> phrases{
        {100, QStringLiteral("Continue")},
        {101, QStringLiteral("Switching Protocols")},
        {102, QStringLiteral("Processing")},
        {200, QStringLiteral("OK")},
        {201, QStringLiteral("Created")},
        {202, QStringLiteral("Accepted")},
        {203, QStringLiteral("Non-Authoritative Information")},
        {204, QStringLiteral("No Content")},
        {205, QStringLiteral("Reset Content")},
        {206, QStringLiteral("Partial Content")},
        {207, QStringLiteral("Multi-Status")},
        {300, QStringLiteral("Multiple Choices")},
        {301, QStringLiteral("Moved Permanently")},
        {302, QStringLiteral("Moved Temporarily")},
        {303, QStringLiteral("See Other")},
        {304, QStringLiteral("Not Modified")},
        {305, QStringLiteral("Use Proxy")},
        {307, QStringLiteral("Temporary Redirect")},
        {400, QStringLiteral("Bad Request")},
        {401, QStringLiteral("Unauthorized")},
        {402, QStringLiteral("Payment Required")},
        {403, QStringLiteral("Forbidden")},
        {404, QStringLiteral("Not Found")},
        {405, QStringLiteral("Method Not Allowed")},
        {406, QStringLiteral("Not Acceptable")},
        {407, QStringLiteral("Proxy Authentication Required")},
        {408, QStringLiteral("Request Time-out")},
        {409, QStringLiteral("Conflict")},
        {410, QStringLiteral("Gone")},
        {411, QStringLiteral("Length Required")},
        {412, QStringLiteral("Precondition Failed")},
        {413, QStringLiteral("Request Entity Too Large")},
        {414, QStringLiteral("Request-URI Too Large")},
        {415, QStringLiteral("Unsupported Media Type")},
        {416, QStringLiteral("Requested Range Not Satisfiable")},
        {417, QStringLiteral("Expectation Failed")},
        {418, QStringLiteral("I\"m a teapot")},
        {422, QStringLiteral("Unprocessable Entity")},
        {423, QStringLiteral("Locked")},
        {424, QStringLiteral("Failed Dependency")},
        {425, QStringLiteral("Unordered Collection")},
        {426, QStringLiteral("Upgrade Required")},
        {500, QStringLiteral("Internal Server Error")},
        {501, QStringLiteral("Not Implemented")},
        {502, QStringLiteral("Bad Gateway")},
        {503, QStringLiteral("Service Unavailable")},
        {504, QStringLiteral("Gateway Time-out")},
        {505, QStringLiteral("HTTP Version not supported")},
        {506, QStringLiteral("Variant Also Negotiates")},
        {507, QStringLiteral("Insufficient Storage")},
        {509, QStringLiteral("Bandwidth Limit Exceeded")},
        {510, QStringLiteral("Not Extended")},
    };
    return phrases;
}

} // namespace

QHttpServer::QHttpServer(QObject* parent)
    : QObject(parent)
{
}

QHttpServer::~QHttpServer() = default;

bool QHttpServer::listen(const QHostAddress& address, quint16 port)
{
    close();
    auto* server = new QTcpServer(this);
    if (!server->listen(address, port)) {
        delete server;
        return false;
    }
    connect(server, &QTcpServer::newConnection, this, &QHttpServer::newConnection);
    m_tcpServer = server;
    return true;
}

bool QHttpServer::listen(quint16 port)
{
    return listen(QHostAddress::Any, port);
}

void QHttpServer::close()
{
    if (!m_tcpServer)
        return;
    m_tcpServer->close();
    m_tcpServer->deleteLater();
    m_tcpServer.clear();
}

quint16 QHttpServer::serverPort() const
{
    return m_tcpServer ? m_tcpServer->serverPort() : 0;
}

QString QHttpServer::reasonPhrase(int statusCode)
{
    return reasonPhrases().value(statusCode);
}

void QHttpServer::newConnection()
{
    while (m_tcpServer && m_tcpServer->hasPendingConnections()) {
        QTcpSocket* socket = m_tcpServer->nextPendingConnection();
        const bool hasRoom = makeRoom();
        auto* connection = new QHttpConnection(socket, m_limits, this);
        connect(connection, &QHttpConnection::newRequest, this, &QHttpServer::newRequest);
        if (!hasRoom)
            connection->refuse(QHttpResponse::STATUS_SERVICE_UNAVAILABLE);
    }
}

// Children are kept in the order of their creation, so the first idle one is the oldest. Without one, a client that
// stands still goes: however many send half a request and no more, the others are served.
bool QHttpServer::makeRoom()
{
    const auto connections = findChildren<QHttpConnection*>(QString(), Qt::FindDirectChildrenOnly);
    if (connections.size() < m_limits.connections)
        return true;
    QHttpConnection* dispensable = nullptr;
    int stalled = m_limits.lingerMilliseconds;
    for (QHttpConnection* connection : connections) {
        if (connection->isIdle()) {
            dispensable = connection;
            break;
        }
        if (connection->stalledMilliseconds() > stalled) {
            dispensable = connection;
            stalled = connection->stalledMilliseconds();
        }
    }
    delete dispensable;
    return dispensable != nullptr;
}
