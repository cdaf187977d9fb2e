#include "rest/FontResourceHandler.h"

#include "qtService/app/service/FontManagementService.h"
#include "qtService/database/KrvFontRepository.h"
#include "rest/FontJson.h"
#include "rest/FontSelection.h"
#include "rest/http/QHttpResponse.h"
#include "rest/waiting.h"

#include <QJsonObject>
#include <QUrlQuery>

#include <algorithm>
#include <cmath>

namespace api::rest {

namespace {

int catalogueSize(const FontManagementService& service)
{
    const auto repository = service.repository();
    return repository ? repository->fontCount() : 0;
}

} // namespace

FontResourceHandler::FontResourceHandler(const QSharedPointer<FontManagementService>& service)
    : LibraryResourceHandler(service, {QHttpRequest::HTTP_DELETE, QHttpRequest::HTTP_GET, QHttpRequest::HTTP_POST})
{
}

int FontResourceHandler::get(QHttpRequest* request, Headers* headers, QByteArray* body)
{
    const QHash<QString, QString> parameters = queryParameters(request->url());
    const QString sortBy = parameters.value(QStringLiteral("sort_by"));
    const bool isDescending = parameters.value(QStringLiteral("order")) == QLatin1String("desc");
    const bool showsPosition = !parameters.value(QStringLiteral("sort_method")).isEmpty();
    const Paging paging = Paging::fromQuery(parameters);
    QUrl linkUrl = requestOrigin(*request);
    linkUrl.setPath(request->path());

    const FontSelection selection(service(), parameters, FontSelection::Similarity::Allowed);
    FontJson fontJson(service(), requestOrigin(*request));
    int count = 0;
    const auto list = [&] {
        QList<StaticFontPtr> fonts = selection.fonts();
        count = fonts.size();
        QHash<int, int> positions;
        const bool isSorted = !sortBy.isEmpty() && sortBy != QLatin1String("#");
        if (showsPosition && isSorted) {
            for (int i = 0; i < count; ++i)
                positions.insert(fonts.at(i)->id(), i);
        }
        if (isSorted)
            FontSelection::sortByProperty(fonts, sortBy, isDescending);
        JsonWriter json(*body);
        json.beginArray();
        for (int i = paging.first(count); i < paging.last(count); ++i) {
            const StaticFontPtr& font = fonts.at(i);
            const int position = !showsPosition ? 0 : isSorted ? positions.value(font->id()) : i;
            fontJson.write(json, *font, position);
        }
        json.endArray();
    };
    // A similarity search is driven by this thread's events.
    if (selection.isSimilaritySearch())
        list();
    else
        runForFonts(catalogueSize(service()), list);

    setJsonType(headers);
    if (!paging.isOn())
        return QHttpResponse::STATUS_OK;
    headers->insert(QStringLiteral("Link"), linkHeader(linkUrl, paging, count));
    return paging.isPastEnd(count) ? QHttpResponse::STATUS_NOT_FOUND : QHttpResponse::STATUS_OK;
}

// The links carry page and page size only, and "last" names the page behind the last one that has fonts: clients know
// both.
QString FontResourceHandler::linkHeader(const QUrl& url, const Paging& paging, int count)
{
    QStringList links;
    const auto add = [&](const QString& relation, const QString& page) {
        QUrlQuery query;
        query.addQueryItem(QStringLiteral("page"), page);
        query.addQueryItem(QStringLiteral("per_page"), QString::number(paging.perPage));
        QUrl link = url;
        link.setQuery(query);
        links.append(QStringLiteral("<%1>; rel=\"%2\"").arg(link.toString(QUrl::FullyEncoded), relation));
    };
    if (paging.page != 0)
        add(QStringLiteral("prev"), QString::number(paging.page - 1));
    if (count - (paging.page + 1) * paging.perPage > 0)
        add(QStringLiteral("next"), QString::number(paging.page + 1));
    add(QStringLiteral("first"), QStringLiteral("0"));
    add(QStringLiteral("last"), QString::number(std::ceil(double(count) / double(paging.perPage))));
    return links.join(QStringLiteral(", "));
}

int FontResourceHandler::post(QHttpRequest* request, Headers* headers, QByteArray* body)
{
    const auto object = jsonObject(request->body());
    if (pathSection(request->path(), 2) != QLatin1String("activity_change") || !object)
        return QHttpResponse::STATUS_BAD_REQUEST;
    const int activityType = object->value(QLatin1String("activityType")).toInt(-1);
    if (activityType < kerval::systemfm::Inactive || activityType > kerval::systemfm::PermanentlyActive)
        return QHttpResponse::STATUS_BAD_REQUEST;

    const FontSelection selection(service(), queryParameters(request->url()), FontSelection::Similarity::Ignored);
    const QList<int> ids = selection.fontIds();
    if (ids.isEmpty())
        return QHttpResponse::STATUS_NOT_FOUND;

    const auto command = service().setFontActivityType(ids, kerval::systemfm::ActivityType(activityType));
    if (!command || !runCommand(*command))
        return QHttpResponse::STATUS_INTERNAL_SERVER_ERROR;

    QList<ActivityChangeResult> results = command->results().values();
    std::sort(results.begin(), results.end(),
              [](const ActivityChangeResult& a, const ActivityChangeResult& b) { return a.fontId < b.fontId; });
    JsonWriter json(*body);
    json.beginArray();
    for (const ActivityChangeResult& result : qAsConst(results)) {
        json.beginObject();
        json.member(QLatin1String("id"), result.fontId);
        json.member(QLatin1String("errorCode"), result.error);
        json.member(QLatin1String("conflictingFont"), result.conflictingFontId);
        json.endObject();
    }
    json.endArray();
    setJsonType(headers);
    return QHttpResponse::STATUS_OK;
}

int FontResourceHandler::remove(QHttpRequest* request, Headers*, QByteArray*)
{
    const FontSelection selection(service(), queryParameters(request->url()), FontSelection::Similarity::Allowed);
    const QList<int> ids = selection.fontIds();
    if (ids.isEmpty())
        return QHttpResponse::STATUS_NOT_FOUND;
    // The command, because the features of the fonts go with them.
    const auto command = service().removeFonts(ids);
    if (!command || !runCommand(*command))
        return QHttpResponse::STATUS_INTERNAL_SERVER_ERROR;
    return QHttpResponse::STATUS_NO_CONTENT;
}

} // namespace api::rest
