#pragma once

#include <QByteArray>
#include <QHash>
#include <QImage>
#include <QList>
#include <QPointer>
#include <QSet>
#include <QTcpServer>
#include <QTcpSocket>
#include <functional>

// A recognition service on loopback that says what the test tells it to, byte for byte, and keeps what it was asked,
// byte for byte. One connection serves one request.
class ScriptedRecognitionServer : public QTcpServer
{
    Q_OBJECT

public:
    struct Request
    {
        QByteArray head; // request line and headers, without the blank line
        QByteArray body;

        QByteArray target() const;                       // of the request line
        QByteArray header(const QByteArray& name) const; // without regard to case; null when absent
    };

    // What goes over the wire. Then the connection is closed, unless it is to stay open or there is something to
    // repeat, which is sent until the client has enough.
    struct Answer
    {
        QByteArray bytes;
        bool stayOpen = false;
        QByteArray repeated = {};
    };

    using Script = std::function<Answer(const Request& request)>;

    explicit ScriptedRecognitionServer(QObject* parent = nullptr);

    // "127.0.0.1:<port>".
    QString host() const;
    void setScript(const Script& script);
    const QList<Request>& requests() const { return m_requests; }
    QList<QByteArray> targets() const;

    // Answers a request that the script has left open.
    void answer(int request, const Answer& answer);

    static Answer page(const QByteArray& body, const QByteArray& contentType = "text/plain",
                       const QByteArray& status = "200 OK");
    static Answer png(const QImage& image);
    static Answer silence();
    static Answer earlyClose();
    static Answer endless();

signals:
    void requested();
    // A client has left before its answer.
    void abandoned();

private:
    void accept();
    void read(QTcpSocket* socket);
    void write(QTcpSocket* socket, const Answer& answer);

    Script m_script;
    QList<Request> m_requests;
    QList<QPointer<QTcpSocket>> m_sockets; // of the requests
    QHash<QTcpSocket*, QByteArray> m_buffers;
    QSet<QTcpSocket*> m_closed; // by this end
};
