#pragma once

#include <QByteArray>
#include <QTcpSocket>

// A client that sends exactly the bytes it is told, and keeps what comes back.
class RawClient
{
public:
    explicit RawClient(quint16 port);

    void send(const QByteArray& bytes);
    // Waits until the received bytes hold the text; false after some seconds, or when the server closes without it.
    bool receive(const QByteArray& text);
    bool waitForClose(int milliseconds = 5000);
    bool isOpen() const;
    const QByteArray& received();
    QTcpSocket& socket() { return m_socket; }

private:
    QTcpSocket m_socket;
    QByteArray m_received;
};
