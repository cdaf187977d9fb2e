#include "tests/fontlens/recognition/ScriptedRecognitionServer.h"

#include <QBuffer>

QByteArray ScriptedRecognitionServer::Request::target() const
{
    return head.left(head.indexOf("\r\n")).split(' ').value(1);
}

QByteArray ScriptedRecognitionServer::Request::header(const QByteArray& name) const
{
    const QList<QByteArray> lines = head.split('\n');
    for (const QByteArray& line : lines) {
        const int colon = line.indexOf(':');
        if (colon > 0 && line.left(colon).toLower() == name.toLower())
            return line.mid(colon + 1).trimmed();
    }
    return {};
}

ScriptedRecognitionServer::ScriptedRecognitionServer(QObject* parent)
    : QTcpServer(parent)
    , m_script([](const Request&) { return silence(); })
{
    connect(this, &QTcpServer::newConnection, this, &ScriptedRecognitionServer::accept);
    listen(QHostAddress::LocalHost);
}

QString ScriptedRecognitionServer::host() const
{
    return QStringLiteral("127.0.0.1:%1").arg(serverPort());
}

void ScriptedRecognitionServer::setScript(const Script& script)
{
    m_script = script;
}

QList<QByteArray> ScriptedRecognitionServer::targets() const
{
    QList<QByteArray> result;
    for (const Request& request : m_requests)
        result.append(request.target());
    return result;
}

ScriptedRecognitionServer::Answer ScriptedRecognitionServer::page(const QByteArray& body, const QByteArray& contentType,
                                                                  const QByteArray& status)
{
    return {"HTTP/1.1 " + status + "\r\nContent-Type: " + contentType +
                "\r\nConnection: close\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body,
            false};
}

ScriptedRecognitionServer::Answer ScriptedRecognitionServer::png(const QImage& image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return page(bytes, "image/png");
}

ScriptedRecognitionServer::Answer ScriptedRecognitionServer::silence()
{
    return {{}, true};
}

ScriptedRecognitionServer::Answer ScriptedRecognitionServer::earlyClose()
{
    return {"HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\nonly this", false};
}

ScriptedRecognitionServer::Answer ScriptedRecognitionServer::endless()
{
    return {"HTTP/1.1 200 OK\r\nContent-Type: text/plain\r\n\r\n", true, QByteArray(64 * 1024, 'x')};
}

void ScriptedRecognitionServer::answer(int request, const Answer& answer)
{
    if (QTcpSocket* socket = m_sockets.value(request))
        write(socket, answer);
}

void ScriptedRecognitionServer::accept()
{
    while (QTcpSocket* socket = nextPendingConnection()) {
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] { read(socket); });
        connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
            m_buffers.remove(socket);
            socket->deleteLater();
            if (!m_closed.remove(socket))
                emit abandoned();
        });
    }
}

void ScriptedRecognitionServer::read(QTcpSocket* socket)
{
    QByteArray& buffer = m_buffers[socket];
    buffer += socket->readAll();
    const int end = buffer.indexOf("\r\n\r\n");
    if (end < 0)
        return;
    Request request{buffer.left(end), buffer.mid(end + 4)};
    if (request.body.size() < request.header("Content-Length").toInt())
        return;
    buffer.clear();
    m_requests.append(request);
    m_sockets.append(socket);
    emit requested();
    write(socket, m_script(request));
}

void ScriptedRecognitionServer::write(QTcpSocket* socket, const Answer& answer)
{
    socket->write(answer.bytes);
    if (!answer.repeated.isEmpty()) {
        const auto goOn = [socket, repeated = answer.repeated] {
            if (socket->bytesToWrite() < repeated.size())
                socket->write(repeated);
        };
        connect(socket, &QTcpSocket::bytesWritten, this, goOn);
        goOn();
    } else if (!answer.stayOpen) {
        m_closed.insert(socket);
        socket->disconnectFromHost();
    }
}
