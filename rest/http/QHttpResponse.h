#pragma once

#include <QByteArray>
#include <QMap>
#include <QObject>
#include <QString>

class QHttpConnection;

// The answer to one request, written straight to its connection: setHeader() as often as needed, writeHead() once,
// write() any number of times, end() once. Deletes itself after end() or when its connection goes; calls out of order
// are reported on the warning channel and change nothing.
//
// Without a Content-Length header (and without chunked encoding, whose framing the caller writes) the connection is
// closed behind the answer.
class QHttpResponse : public QObject
{
    Q_OBJECT

public:
    enum StatusCode
    {
        STATUS_CONTINUE = 100,
        STATUS_OK = 200,
        STATUS_CREATED = 201,
        STATUS_NO_CONTENT = 204,
        STATUS_BAD_REQUEST = 400,
        STATUS_FORBIDDEN = 403,
        STATUS_NOT_FOUND = 404,
        STATUS_METHOD_NOT_ALLOWED = 405,
        STATUS_REQUEST_ENTITY_TOO_LARGE = 413,
        STATUS_REQUEST_HEADER_FIELDS_TOO_LARGE = 431,
        STATUS_INTERNAL_SERVER_ERROR = 500,
        STATUS_SERVICE_UNAVAILABLE = 503
    };
    Q_ENUM(StatusCode)

    explicit QHttpResponse(QHttpConnection* connection);

    bool isHeaderWritten() const { return m_headerWritten; }
    bool isFinished() const { return m_finished; }

public slots:
    void setHeader(const QString& field, const QString& value);
    void writeHead(int statusCode);
    void writeHead(QHttpResponse::StatusCode statusCode);
    void write(const QByteArray& data);
    void end(const QByteArray& data);
    void end();

signals:
    void allBytesWritten();
    void done();
    // The client has left while its request, which had arrived whole, was waiting for this answer. Ending is still due.
    void abandoned();

private slots:
    void connectionClosed();

private:
    friend class QHttpConnection;

    void writeHeaders();
    void writeHeader(const QString& field, const QString& value);

    QHttpConnection* m_connection;
    QMap<QString, QString> m_headers;
    QByteArray m_head; // collects status line and headers, so that they leave in one piece
    bool m_headerWritten = false;
    bool m_sentConnectionHeader = false;
    bool m_sentContentLengthHeader = false;
    bool m_sentTransferEncodingHeader = false;
    bool m_sentDate = false;
    bool m_keepAlive = true;
    bool m_last = false;
    bool m_useChunkedEncoding = false;
    bool m_finished = false;
};
