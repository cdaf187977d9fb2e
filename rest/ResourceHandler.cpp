#include "rest/ResourceHandler.h"

#include "rest/http/HttpLimits.h"
#include "rest/http/QHttpResponse.h"

#include <QJsonDocument>
#include <QRegularExpression>
#include <QUrlQuery>

namespace api::rest {

ResourceHandler::ResourceHandler(const Methods& methods)
    : m_methods(methods)
{
}

ResourceHandler::~ResourceHandler() = default;

int ResourceHandler::get(QHttpRequest*, Headers*, QByteArray*)
{
    return QHttpResponse::STATUS_METHOD_NOT_ALLOWED;
}

int ResourceHandler::put(QHttpRequest*, Headers*, QByteArray*)
{
    return QHttpResponse::STATUS_METHOD_NOT_ALLOWED;
}

int ResourceHandler::post(QHttpRequest*, Headers*, QByteArray*)
{
    return QHttpResponse::STATUS_METHOD_NOT_ALLOWED;
}

int ResourceHandler::remove(QHttpRequest*, Headers*, QByteArray*)
{
    return QHttpResponse::STATUS_METHOD_NOT_ALLOWED;
}

int ResourceHandler::patch(QHttpRequest*, Headers*, QByteArray*)
{
    return QHttpResponse::STATUS_METHOD_NOT_ALLOWED;
}

qint64 ResourceHandler::bodyLimit() const
{
    return HttpLimits().bodyBytes;
}

bool ResourceHandler::isPrivate() const
{
    return false;
}

int ResourceHandler::handle(QHttpRequest* request, Headers* headers, QByteArray* body)
{
    headers->clear();
    body->clear();
    switch (request->method()) {
    case QHttpRequest::HTTP_GET:
        return get(request, headers, body);
    case QHttpRequest::HTTP_PUT:
        return put(request, headers, body);
    case QHttpRequest::HTTP_POST:
        return post(request, headers, body);
    case QHttpRequest::HTTP_DELETE:
        return remove(request, headers, body);
    case QHttpRequest::HTTP_PATCH:
        return patch(request, headers, body);
    case QHttpRequest::HTTP_OPTIONS: {
        QStringList names;
        for (const QHttpRequest::HttpMethod method : m_methods)
            names.append(methodText(method));
        names.append(methodText(QHttpRequest::HTTP_OPTIONS));
        const QString allowed = names.join(QLatin1Char(','));
        headers->insert(QStringLiteral("Access-Control-Allow-Headers"), QStringLiteral("Content-Type"));
        headers->insert(QStringLiteral("Access-Control-Allow-Methods"), allowed);
        headers->insert(QStringLiteral("Allow"), allowed);
        return QHttpResponse::STATUS_OK;
    }
    default:
        return QHttpResponse::STATUS_OK;
    }
}

QHash<QString, QString> ResourceHandler::queryParameters(const QUrl& url)
{
    QHash<QString, QString> parameters;
    const auto items = QUrlQuery(url).queryItems(QUrl::FullyDecoded);
    for (const auto& item : items) {
        QString value = item.second;
        parameters.insert(item.first, value.replace(QLatin1Char('+'), QLatin1Char(' ')));
    }
    return parameters;
}

std::optional<bool> ResourceHandler::parseBool(const QString& text)
{
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    if (isNumber)
        return number != 0;
    const QString word = text.toLower();
    if (word == QLatin1String("yes") || word == QLatin1String("true"))
        return true;
    if (word == QLatin1String("no") || word == QLatin1String("false"))
        return false;
    return std::nullopt;
}

QString ResourceHandler::methodText(QHttpRequest::HttpMethod method)
{
    switch (method) {
    case QHttpRequest::HTTP_DELETE:
        return QStringLiteral("DELETE");
    case QHttpRequest::HTTP_GET:
        return QStringLiteral("GET");
    case QHttpRequest::HTTP_HEAD:
        return QStringLiteral("HEAD");
    case QHttpRequest::HTTP_POST:
        return QStringLiteral("POST");
    case QHttpRequest::HTTP_PUT:
        return QStringLiteral("PUT");
    case QHttpRequest::HTTP_OPTIONS:
        return QStringLiteral("OPTIONS");
    case QHttpRequest::HTTP_PATCH:
        return QStringLiteral("PATCH");
    default:
        return QString();
    }
}

std::optional<QJsonObject> ResourceHandler::jsonObject(const QByteArray& body)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(body, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        return std::nullopt;
    return document.object();
}

QString ResourceHandler::pathSection(const QString& path, int n)
{
    return path.section(QLatin1Char('/'), n, n);
}

int ResourceHandler::idFromPath(const QString& path)
{
    const QStringList sections = path.split(QLatin1Char('/'));
    const int index = sections.last().isEmpty() ? sections.size() - 2 : sections.size() - 1;
    return sections.value(index).toInt();
}

QList<int> ResourceHandler::numberList(const QString& commaSeparated)
{
    QList<int> numbers;
    const auto parts = commaSeparated.splitRef(QLatin1Char(','), Qt::SkipEmptyParts);
    for (const QStringRef& part : parts)
        numbers.append(part.toInt());
    return numbers;
}

void ResourceHandler::setJsonType(Headers* headers)
{
    headers->insert(QStringLiteral("Content-Type"), QStringLiteral("application/json"));
}

} // namespace api::rest
