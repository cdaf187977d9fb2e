#include "rest/http/QHttpConnection.h"

#include "rest/http/QHttpRequest.h"
#include "rest/http/QHttpResponse.h"

#include <QHostAddress>
#include <QTcpSocket>

namespace {
constexpr qint64 readChunk = 64 * 1024;
}

QHttpConnection::QHttpConnection(QTcpSocket* socket, const HttpLimits& limits, QObject* parent)
    : QObject(parent)
    , m_socket(socket)
    , m_limits(limits)
    , m_parser(*this, limits)
{
    m_socket->setParent(this);
    // What is not read stays with the peer: a client that sends ahead of its answers cannot fill our memory.
    m_socket->setReadBufferSize(4 * readChunk);
    connect(m_socket, &QTcpSocket::readyRead, this, &QHttpConnection::parseRequest);
    connect(m_socket, &QTcpSocket::disconnected, this, &QHttpConnection::socketDisconnected);
    connect(m_socket, &QTcpSocket::bytesWritten, this, &QHttpConnection::updateWriteCount);
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &QHttpConnection::onTimeout);
    m_timer.start(m_limits.idleMilliseconds);
}

QHttpConnection::~QHttpConnection()
{
    // The socket closes while this object is half gone; its signals must not come back here.
    m_socket->disconnect(this);
}

void QHttpConnection::write(const QByteArray& data)
{
    if (m_isDisconnected)
        return;
    const qint64 accepted = m_socket->write(data);
    if (accepted > 0)
        m_transmitLength += accepted;
}

void QHttpConnection::updateWriteCount(qint64 count)
{
    m_transmitPosition += count;
    m_timer.start(); // as long as before: a refused client is not given more time by taking its answer
    if (m_transmitPosition == m_transmitLength) {
        m_transmitLength = 0;
        m_transmitPosition = 0;
        emit allBytesWritten();
    }
}

bool QHttpConnection::isIdle() const
{
    return m_phase == Phase::Serving && !m_response && m_transmitLength == 0 && (!m_request || m_request->isComplete());
}

int QHttpConnection::stalledMilliseconds() const
{
    return isBeingHandled() || !m_timer.isActive() ? 0 : m_timer.interval() - m_timer.remainingTime();
}

bool QHttpConnection::isBeingHandled() const
{
    return m_response && m_request && m_request->isComplete();
}

void QHttpConnection::parseRequest()
{
    // Handlers run event loops of their own, through which the socket's signals arrive here again.
    if (m_isFeeding)
        return;
    const QPointer<QHttpConnection> guard(this);
    while (guard) {
        if (m_phase == Phase::Closing) {
            discardInput();
            return;
        }
        if (m_parser.state() == HttpRequestParser::State::MessageComplete) {
            if (m_response)
                return; // responseDone() comes back here
            m_parser.resume();
        }
        if (m_unparsed.isEmpty()) {
            m_unparsed = m_socket->read(readChunk);
            if (m_unparsed.isEmpty())
                return;
        }
        m_isFeeding = true;
        m_unparsed.remove(0, m_parser.feed(m_unparsed));
        m_isFeeding = false;

        switch (m_parser.state()) {
        case HttpRequestParser::State::Reading:
            break;
        case HttpRequestParser::State::MessageComplete:
            completeRequest();
            break;
        case HttpRequestParser::State::Malformed:
            refuse(QHttpResponse::STATUS_BAD_REQUEST);
            break;
        case HttpRequestParser::State::HeadersTooLarge:
            refuse(QHttpResponse::STATUS_REQUEST_HEADER_FIELDS_TOO_LARGE);
            break;
        case HttpRequestParser::State::BodyTooLarge:
            refuse(QHttpResponse::STATUS_REQUEST_ENTITY_TOO_LARGE);
            break;
        }
    }
}

void QHttpConnection::messageBegun()
{
    if (m_request)
        m_request->deleteLater();
    m_request = new QHttpRequest(this);
    m_timer.start(m_limits.idleMilliseconds);
}

void QHttpConnection::headersComplete(const HttpRequestHead& head)
{
    m_request->m_method = head.method;
    m_request->m_url = head.url;
    m_request->m_httpVersion = head.httpVersion;
    m_request->m_headers = head.headers;
    m_request->m_remoteAddress = m_socket->peerAddress().toString();
    m_request->m_remotePort = m_socket->peerPort();

    m_response = createResponse();
    m_response->m_keepAlive = head.keepAlive;
    emit newRequest(m_request, m_response);

    // Clients with a large body wait for this line, or for a refusal, before they send it.
    if (m_response && m_request->header(QStringLiteral("expect")).toLower() == QLatin1String("100-continue"))
        write("HTTP/1.1 100 Continue\r\n\r\n");
}

QHttpResponse* QHttpConnection::createResponse()
{
    auto* response = new QHttpResponse(this);
    connect(this, &QObject::destroyed, response, &QHttpResponse::connectionClosed);
    connect(response, &QHttpResponse::done, this, &QHttpConnection::responseDone);
    return response;
}

void QHttpConnection::bodyReceived(const QByteArray& data)
{
    if (m_phase != Phase::Serving)
        return;
    m_timer.start(m_limits.idleMilliseconds);
    emit m_request->data(data);
}

void QHttpConnection::completeRequest()
{
    if (m_phase == Phase::Refused) {
        closeWhenWritten();
        return;
    }
    // However long the handling takes, the client is not the idle one.
    if (m_response)
        m_timer.stop();
    m_request->m_isComplete = true;
    emit m_request->end();
}

void QHttpConnection::refuse(int statusCode)
{
    if (m_phase != Phase::Serving) { // it has its answer
        m_phase = Phase::Closing;
        discardInput();
        return;
    }
    // A body that grew beyond its limit belongs to a request that somebody may be about to answer.
    const QPointer<QHttpResponse> response = m_response ? m_response.data() : createResponse();
    m_response = response;
    if (!response->isHeaderWritten()) {
        response->setHeader(QStringLiteral("Connection"), QStringLiteral("close"));
        response->setHeader(QStringLiteral("Content-Length"), QStringLiteral("0"));
        response->writeHead(statusCode);
    }
    m_phase = Phase::Closing;
    response->end();
    // After malformed bytes the peer decides when to leave, within the idle time; the others are let go soon.
    m_timer.start(statusCode == QHttpResponse::STATUS_BAD_REQUEST ? m_limits.idleMilliseconds
                                                                  : m_limits.lingerMilliseconds);
    discardInput();
}

void QHttpConnection::responseDone()
{
    auto* response = qobject_cast<QHttpResponse*>(sender());
    m_response.clear();
    if (m_isDisconnected) {
        deleteLater();
        return;
    }
    if (m_phase != Phase::Serving)
        return;
    m_timer.start(m_limits.idleMilliseconds);
    if (response && response->m_last) {
        // Closing with unread bytes would reset the connection and could take the answer with it.
        if (m_request && m_request->isComplete()) {
            closeWhenWritten();
        } else {
            m_phase = Phase::Refused;
            m_timer.start(m_limits.lingerMilliseconds);
        }
        return;
    }
    QMetaObject::invokeMethod(this, &QHttpConnection::parseRequest, Qt::QueuedConnection);
}

void QHttpConnection::closeWhenWritten()
{
    m_phase = Phase::Closing;
    m_socket->disconnectFromHost();
}

void QHttpConnection::discardInput()
{
    m_unparsed.clear();
    while (!m_socket->read(readChunk).isEmpty()) {
    }
}

void QHttpConnection::socketDisconnected()
{
    m_isDisconnected = true;
    m_timer.stop();
    // Deleting now would take the request away from a handler that waits in an event loop of its own.
    if (!isBeingHandled())
        deleteLater();
    if (m_request && !m_request->isComplete())
        emit m_request->end();
    else if (isBeingHandled())
        emit m_response->abandoned();
}

void QHttpConnection::onTimeout()
{
    if (isBeingHandled() && m_transmitLength == 0)
        return;
    // A polite close would wait for a peer that may not read at all.
    m_socket->flush();
    m_socket->abort();
}
