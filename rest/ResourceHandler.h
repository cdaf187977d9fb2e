#pragma once

#include "rest/http/QHttpRequest.h"

#include <QByteArray>
#include <QHash>
#include <QJsonObject>
#include <QString>
#include <QUrl>
#include <optional>
#include <set>

namespace api::rest {

// Answers the requests of one route. Subclasses override the operations of the methods they support and name these to
// the constructor, which is what OPTIONS lists. An operation fills headers and body and returns the status code; the
// methods it does not override answer 405.
//
// Handlers live on the main thread. Operations do not wait for anything; what has to is a DeferredResourceHandler.
class ResourceHandler
{
public:
    using Headers = QHash<QString, QString>;
    using Methods = std::set<QHttpRequest::HttpMethod>;

    explicit ResourceHandler(const Methods& methods = {});

protected:
    virtual int get(QHttpRequest* request, Headers* headers, QByteArray* body);
    virtual int put(QHttpRequest* request, Headers* headers, QByteArray* body);
    virtual int post(QHttpRequest* request, Headers* headers, QByteArray* body);
    virtual int remove(QHttpRequest* request, Headers* headers, QByteArray* body);
    virtual int patch(QHttpRequest* request, Headers* headers, QByteArray* body);

public:
    virtual ~ResourceHandler();
    Q_DISABLE_COPY(ResourceHandler)

    // Methods that are neither of the five nor OPTIONS answer 200 without a body.
    int handle(QHttpRequest* request, Headers* headers, QByteArray* body);

    const Methods& methods() const { return m_methods; }
    // What a request may bring, in bytes.
    virtual qint64 bodyLimit() const;
    // Whether its requests are answered to programs of this machine alone, whatever the settings allow others, and to
    // no web page that is not this machine's own or trusted, not even for reading.
    virtual bool isPrivate() const;

    // Fully decoded; "+" is a space, and of a repeated key the last value counts.
    static QHash<QString, QString> queryParameters(const QUrl& url);
    // Decimal numbers (0 is false), yes, no, true and false in any case; nothing for every other text.
    static std::optional<bool> parseBool(const QString& text);
    // Empty for methods that no handler serves.
    static QString methodText(QHttpRequest::HttpMethod method);

protected:
    // Nothing when the text is no JSON object.
    static std::optional<QJsonObject> jsonObject(const QByteArray& body);
    // The section behind the n-th slash; empty when there is none.
    static QString pathSection(const QString& path, int n);
    // The last section as a number, also when a slash follows it; 0 when it is none.
    static int idFromPath(const QString& path);
    static QList<int> numberList(const QString& commaSeparated);
    static void setJsonType(Headers* headers);

private:
    Methods m_methods;
};

} // namespace api::rest
