#include "tests/rest/http/rawclient.h"

#include <QDeadlineTimer>
#include <QHostAddress>
#include <QtTest>

RawClient::RawClient(quint16 port)
{
    m_socket.connectToHost(QHostAddress::LocalHost, port);
    if (!QTest::qWaitFor([this] { return m_socket.state() == QAbstractSocket::ConnectedState; }))
        qFatal("no connection to port %d", port);
}

void RawClient::send(const QByteArray& bytes)
{
    m_socket.write(bytes);
    // Not all may fit when the server has stopped reading; the rest goes out while the test waits.
    m_socket.flush();
}

const QByteArray& RawClient::received()
{
    m_received += m_socket.readAll();
    return m_received;
}

bool RawClient::receive(const QByteArray& text)
{
    return QTest::qWaitFor([&] { return received().contains(text) || !isOpen(); }) && received().contains(text);
}

bool RawClient::isOpen() const
{
    return m_socket.state() == QAbstractSocket::ConnectedState;
}

bool RawClient::waitForClose(int milliseconds)
{
    const bool closed = QTest::qWaitFor([this] { return !isOpen(); }, milliseconds);
    received();
    return closed;
}
