#include "rest/http/FMSTcpServerWorker.h"

#include "rest/http/HttpHeader.h"
#include "rest/http/NewRequestEvent.h"
#include "rest/http/RequestParser.h"

#include <QCoreApplication>
#include <QDebug>
#include <QRegularExpression>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

#include <atomic>

namespace {

std::atomic<qint64> connectionCounter{0};

int announcedLength(const QByteArray& header)
{
    static const QRegularExpression pattern(QStringLiteral("Content-Length:[ ]*([0-9]*)"),
                                            QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = pattern.match(QString::fromLatin1(header));
    bool isNumber = false;
    const int length = match.captured(1).toInt(&isNumber);
    return isNumber ? length : -1;
}

} // namespace

FMSTcpServerWorker::FMSTcpServerWorker(QTcpServer* server, QObject* receiver, QObject* parent)
    : QObject(parent)
    , m_server(server)
    , m_receiver(receiver)
{
    qRegisterMetaType<fms::FMSRequest>("fms::FMSRequest");
    connect(server, &QTcpServer::newConnection, this, &FMSTcpServerWorker::onNewConnection);
}

FMSTcpServerWorker::~FMSTcpServerWorker()
{
    const QList<QTcpSocket*> sockets = m_buffers.keys();
    for (QTcpSocket* socket : sockets) {
        socket->disconnect(this);
        socket->deleteLater();
    }
}

void FMSTcpServerWorker::onNewConnection()
{
    // Several clients may have come since the signal was sent.
    while (m_server && m_server->hasPendingConnections())
        addSocket(m_server->nextPendingConnection());
}

void FMSTcpServerWorker::addSocket(QTcpSocket* socket)
{
    if (m_buffers.contains(socket)) {
        socket->write("Error! Socket already exists");
        return;
    }
    if (m_buffers.size() >= m_limits.clients) {
        socket->abort();
        socket->deleteLater();
        return;
    }
    socket->setSocketOption(QAbstractSocket::KeepAliveOption, 1);
    socket->setReadBufferSize(m_limits.bufferBytes);
    socket->setObjectName(QString::number(++connectionCounter));
    m_buffers.insert(socket, QByteArray());
    connect(socket, &QTcpSocket::readyRead, this, &FMSTcpServerWorker::onSocketReadyRead);
    connect(socket, &QTcpSocket::disconnected, this, &FMSTcpServerWorker::onSocketDisconnected);
    connect(socket, QOverload<QAbstractSocket::SocketError>::of(&QTcpSocket::error), this,
            &FMSTcpServerWorker::onSocketError);
    auto* timer = new QTimer(socket);
    timer->setSingleShot(true);
    timer->setInterval(m_limits.idleMilliseconds);
    connect(timer, &QTimer::timeout, this, [this, socket] { onSocketIdle(socket); });
    connect(socket, &QTcpSocket::readyRead, timer, QOverload<>::of(&QTimer::start));
    timer->start();
}

void FMSTcpServerWorker::onSocketIdle(QTcpSocket* socket)
{
    if (!m_pendingRequests.contains(socket->objectName()))
        socket->abort();
}

void FMSTcpServerWorker::onSocketReadyRead()
{
    auto* socket = qobject_cast<QTcpSocket*>(sender());
    if (!socket || !m_buffers.contains(socket))
        return;
    QByteArray& buffer = m_buffers[socket];
    // One byte beyond the limit is enough to know that it is passed.
    buffer += socket->read(m_limits.bufferBytes + 1 - buffer.size());
    fms::FMSRequest request;
    bool isValid = false;
    if (!readRequest(buffer, request, isValid)) {
        if (buffer.size() > m_limits.bufferBytes) {
            qWarning() << "W_0_"
                       << "Request of connection" << socket->objectName() << "is too long";
            socket->abort();
        }
        return;
    }
    disconnect(socket, &QTcpSocket::readyRead, this, &FMSTcpServerWorker::onSocketReadyRead);
    buffer = QByteArray();
    if (isValid) {
        dispatch(socket, request);
    } else {
        qWarning() << "W_0_"
                   << "Request of connection" << socket->objectName() << "is not well-formed";
        socket->abort();
    }
}

bool FMSTcpServerWorker::readRequest(const QByteArray& buffer, fms::FMSRequest& request, bool& valid)
{
    valid = true;
    const bool isGet = buffer.startsWith("GET ");
    if (isGet || buffer.startsWith("POST ")) {
        const int headerEnd = buffer.indexOf("\r\n\r\n");
        if (headerEnd < 0)
            return false;
        if (isGet) {
            const QByteArray line = buffer.left(buffer.indexOf("\r\n"));
            const int targetEnd = line.indexOf(" HTTP/");
            QByteArray target = line.mid(5, targetEnd < 0 ? -1 : qMax(0, targetEnd - 5));
            while (target.startsWith('?'))
                target.remove(0, 1);
            request = fms::FMSRequest::fromFields(target);
            return true;
        }
        // Exactly the announced bytes: a client that sends more is out of step, and its request is never processed.
        const int length = announcedLength(buffer.left(headerEnd));
        if (length < 0 || buffer.size() - headerEnd - 4 != length)
            return false;
        const QByteArray body = buffer.mid(headerEnd + 4);
        qDebug() << "M_2_"
                 << "POST:" << body;
        request = fms::FMSRequest::fromFields(body);
        return true;
    }
    const int end = buffer.indexOf("</REQUEST");
    if (end < 0)
        return false;
    const int start = buffer.indexOf("<REQUEST");
    // The end tag's own end may still be on its way, and what follows it does not belong to the request.
    valid = start >= 0 && start < end &&
            fms::RequestParser::parse(QString::fromUtf8(buffer.mid(start, end - start)) + QLatin1String("</REQUEST>"),
                                      request);
    return true;
}

void FMSTcpServerWorker::dispatch(QTcpSocket* socket, const fms::FMSRequest& request)
{
    if (request.type.compare(QLatin1String("LISTEN"), Qt::CaseInsensitive) == 0) {
        m_pendingRequests.insert(socket->objectName(), request);
        if (m_receiver)
            QCoreApplication::postEvent(m_receiver, new NewRequestEvent(request, socket->objectName().toInt()));
        return;
    }
    HttpHeader header;
    header.setStatusCode(200);
    socket->write(header.toByteArray() + "OK\n");
    socket->flush();
}

void FMSTcpServerWorker::onSocketDisconnected()
{
    auto* socket = qobject_cast<QTcpSocket*>(sender());
    if (!socket)
        return;
    m_buffers.remove(socket);
    m_pendingRequests.remove(socket->objectName());
    socket->deleteLater();
}

void FMSTcpServerWorker::onSocketError(QAbstractSocket::SocketError socketError)
{
    auto* socket = qobject_cast<QTcpSocket*>(sender());
    if (!socket)
        return;
    qDebug() << "Socket ERROR" << socketError << "FMSTcpServerWorker::onSocketError" << socket->objectName()
             << socket->errorString();
}
