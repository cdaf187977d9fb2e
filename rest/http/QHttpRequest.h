#pragma once

#include <QByteArray>
#include <QHash>
#include <QObject>
#include <QString>
#include <QUrl>

class QHttpConnection;

using HeaderHash = QHash<QString, QString>;

// One request as it is being received. Its head is known when QHttpServer announces it; the body comes through data(),
// and is kept only by those who connect data() to appendBody(). end() comes exactly once: with isComplete() true when
// everything has arrived, with false when the peer left before that. A request that is not complete must not be
// carried out.
//
// A child of its connection. It stays valid until its response has ended, or until the server itself is destroyed:
// whoever runs an event loop between request and answer must not touch it afterwards without a QPointer.
class QHttpRequest : public QObject
{
    Q_OBJECT
    Q_PROPERTY(HeaderHash headers READ headers)
    Q_PROPERTY(QString remoteAddress READ remoteAddress)
    Q_PROPERTY(quint16 remotePort READ remotePort)
    Q_PROPERTY(QString method READ methodString)
    Q_PROPERTY(QUrl url READ url)
    Q_PROPERTY(QString path READ path)
    Q_PROPERTY(QString httpVersion READ httpVersion)

public:
    enum HttpMethod
    {
        HTTP_DELETE = 0,
        HTTP_GET = 1,
        HTTP_HEAD = 2,
        HTTP_POST = 3,
        HTTP_PUT = 4,
        HTTP_CONNECT = 5,
        HTTP_OPTIONS = 6,
        HTTP_TRACE = 7,
        HTTP_COPY = 8,
        HTTP_LOCK = 9,
        HTTP_MKCOL = 10,
        HTTP_MOVE = 11,
        HTTP_PROPFIND = 12,
        HTTP_PROPPATCH = 13,
        HTTP_SEARCH = 14,
        HTTP_UNLOCK = 15,
        HTTP_REPORT = 16,
        HTTP_MKACTIVITY = 17,
        HTTP_CHECKOUT = 18,
        HTTP_MERGE = 19,
        HTTP_MSEARCH = 20,
        HTTP_NOTIFY = 21,
        HTTP_SUBSCRIBE = 22,
        HTTP_UNSUBSCRIBE = 23,
        HTTP_PATCH = 24,
        HTTP_PURGE = 25
    };
    Q_ENUM(HttpMethod)

    explicit QHttpRequest(QHttpConnection* connection);

    const HeaderHash& headers() const { return m_headers; }
    // The value of a field, given in lower case; empty when the request has none.
    QString header(const QString& field) const { return m_headers.value(field); }
    int method() const { return m_method; }
    QString methodString() const;
    const QUrl& url() const { return m_url; }
    QString path() const; // fully decoded
    const QString& httpVersion() const { return m_httpVersion; }
    const QString& remoteAddress() const { return m_remoteAddress; }
    quint16 remotePort() const { return m_remotePort; }
    const QByteArray& body() const { return m_body; }
    bool isComplete() const { return m_isComplete; }

public slots:
    void appendBody(const QByteArray& body);

signals:
    void data(const QByteArray& data);
    void end();

private:
    friend class QHttpConnection;

    HeaderHash m_headers;
    int m_method = HTTP_GET;
    QUrl m_url;
    QString m_httpVersion;
    QString m_remoteAddress;
    quint16 m_remotePort = 0;
    QByteArray m_body;
    bool m_isComplete = false;
};
