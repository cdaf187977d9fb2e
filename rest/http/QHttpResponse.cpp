#include "rest/http/QHttpResponse.h"

#include "rest/http/QHttpConnection.h"
#include "rest/http/QHttpServer.h"

#include <QDateTime>
#include <QDebug>
#include <QLocale>

QHttpResponse::QHttpResponse(QHttpConnection* connection)
    : m_connection(connection)
{
    connect(connection, &QHttpConnection::allBytesWritten, this, &QHttpResponse::allBytesWritten);
}

void QHttpResponse::setHeader(const QString& field, const QString& value)
{
    if (m_finished) {
        qWarning() << "QHttpResponse::setHeader() Cannot set headers after response has finished.";
        return;
    }
    // A line break in a value would let whoever supplied it write headers of its own.
    QString clean = value;
    clean.replace(QLatin1Char('\r'), QLatin1Char(' ')).replace(QLatin1Char('\n'), QLatin1Char(' '));
    m_headers.insert(field, clean);
}

void QHttpResponse::writeHead(int statusCode)
{
    if (m_finished) {
        qWarning() << "QHttpResponse::writeHead() Cannot write headers after response has finished.";
        return;
    }
    if (m_headerWritten) {
        qWarning() << "QHttpResponse::writeHead() Already called once for this response.";
        return;
    }
    m_head = QStringLiteral("HTTP/1.1 %1 %2\r\n").arg(statusCode).arg(QHttpServer::reasonPhrase(statusCode)).toLatin1();
    writeHeaders();
    m_head += "\r\n";
    m_connection->write(m_head);
    m_head.clear();
    m_headerWritten = true;
}

void QHttpResponse::writeHead(StatusCode statusCode)
{
    writeHead(int(statusCode));
}

void QHttpResponse::writeHeaders()
{
    for (auto header = m_headers.cbegin(); header != m_headers.cend(); ++header) {
        const QString field = header.key().toLower();
        const QString& value = header.value();
        if (field == QLatin1String("connection")) {
            m_sentConnectionHeader = true;
            if (value == QLatin1String("close"))
                m_last = true;
            else
                m_keepAlive = true;
        } else if (field == QLatin1String("transfer-encoding")) {
            m_sentTransferEncodingHeader = true;
            if (value == QLatin1String("chunked"))
                m_useChunkedEncoding = true;
        } else if (field == QLatin1String("content-length")) {
            m_sentContentLengthHeader = true;
        } else if (field == QLatin1String("date")) {
            m_sentDate = true;
        }
        writeHeader(header.key(), value);
    }

    if (!m_sentConnectionHeader) {
        if (m_keepAlive && (m_sentContentLengthHeader || m_useChunkedEncoding)) {
            writeHeader(QStringLiteral("Connection"), QStringLiteral("keep-alive"));
        } else {
            m_last = true;
            writeHeader(QStringLiteral("Connection"), QStringLiteral("close"));
        }
    }
    if (!m_sentContentLengthHeader && !m_sentTransferEncodingHeader) {
        if (m_useChunkedEncoding)
            writeHeader(QStringLiteral("Transfer-Encoding"), QStringLiteral("chunked"));
        else
            m_last = true;
    }
    if (!m_sentDate) {
        const QString date =
            QLocale::c().toString(QDateTime::currentDateTimeUtc(), QStringLiteral("ddd, dd MMM yyyy hh:mm:ss"));
        writeHeader(QStringLiteral("Date"), date + QLatin1String(" GMT"));
    }
}

void QHttpResponse::writeHeader(const QString& field, const QString& value)
{
    if (m_finished) {
        qWarning() << "QHttpResponse::writeHeader() Cannot write headers after response has finished.";
        return;
    }
    m_head += field.toUtf8();
    m_head += ": ";
    m_head += value.toUtf8();
    m_head += "\r\n";
}

void QHttpResponse::write(const QByteArray& data)
{
    if (m_finished) {
        qWarning() << "QHttpResponse::write() Cannot write body after response has finished.";
        return;
    }
    if (!m_headerWritten) {
        qWarning() << "QHttpResponse::write() You must call writeHead() before writing body data.";
        return;
    }
    m_connection->write(data);
}

void QHttpResponse::end(const QByteArray& data)
{
    if (m_finished) {
        qWarning() << "QHttpResponse::end() Cannot write end after response has finished.";
        return;
    }
    if (!data.isEmpty())
        write(data);
    m_finished = true;
    emit done();
    deleteLater();
}

void QHttpResponse::end()
{
    end(QByteArray());
}

void QHttpResponse::connectionClosed()
{
    m_finished = true;
    deleteLater();
}
