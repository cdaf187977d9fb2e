#include "rest/http/QHttpRequest.h"

#include "rest/http/QHttpConnection.h"

#include <QMetaEnum>

QHttpRequest::QHttpRequest(QHttpConnection* connection)
    : QObject(connection)
    , m_url(QStringLiteral("http://localhost/"))
{
}

QString QHttpRequest::methodString() const
{
    const char* key = QMetaEnum::fromType<HttpMethod>().valueToKey(m_method);
    return key ? QString::fromLatin1(key).mid(5) : QString();
}

QString QHttpRequest::path() const
{
    return m_url.path(QUrl::FullyDecoded);
}

void QHttpRequest::appendBody(const QByteArray& body)
{
    m_body.append(body);
}
