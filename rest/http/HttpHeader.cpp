#include "rest/http/HttpHeader.h"

HttpHeader::HttpHeader(QObject* parent)
    : QObject(parent)
{
}

QByteArray HttpHeader::toByteArray() const
{
    QByteArray text = "HTTP/1.1 " + QByteArray::number(m_statusCode) + " OK\r\n";
    for (auto header = m_headers.cbegin(); header != m_headers.cend(); ++header)
        text += header.key().toUtf8() + ": " + header.value().toUtf8() + "\r\n";
    return text + "\r\n";
}
