#include "rest/FontResourceHandler.h"

#include "qtService/app/service/FontManagementService.h"
#include "qtService/database/FindMathingFontsCommand.h"
#include "qtService/database/KrvFontRepository.h"
#include "rest/FontJson.h"
#include "rest/FontSelection.h"
#include "rest/http/QHttpResponse.h"

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

// One list on its way: what was asked for, and what came of it.
struct FontResourceHandler::Listing
{
    Listing(FontManagementService& service, const QHttpRequest& request, const QHash<QString, QString>& parameters)
        : selection(service, parameters, FontSelection::Similarity::Allowed)
        , fontJson(service, requestOrigin(request))
        , paging(Paging::fromQuery(parameters))
        , linkUrl(requestOrigin(request))
        , sortBy(parameters.value(QStringLiteral("sort_by")))
        , isDescending(parameters.value(QStringLiteral("order")) == QLatin1String("desc"))
        , showsPosition(!parameters.value(QStringLiteral("sort_method")).isEmpty())
    {
        linkUrl.setPath(request.path());
    }

    void write();
    Answer answer() const;

    const FontSelection selection;
    FontJson fontJson;
    const Paging paging;
    QUrl linkUrl;
    const QString sortBy;
    const bool isDescending;
    const bool showsPosition;
    int count = 0;
    QByteArray body;
};

void FontResourceHandler::Listing::write()
{
    const QList<StaticFontPtr> fonts = selection.fonts();
    count = fonts.size();
    QHash<int, int> positions;
    const bool isSorted = !sortBy.isEmpty() && sortBy != QLatin1String("#");
    if (showsPosition && isSorted) {
        for (int i = 0; i < count; ++i)
            positions.insert(fonts.at(i)->id(), i);
    }
    const int first = paging.first(count);
    const int last = paging.last(count);
    const QList<StaticFontPtr> slice = isSorted ? FontSelection::sortedSlice(fonts, sortBy, isDescending, first, last)
                                                : fonts.mid(first, last - first);
    JsonWriter json(body);
    json.beginArray();
    for (int i = 0; i < slice.size(); ++i) {
        const StaticFontPtr& font = slice.at(i);
        const int position = !showsPosition ? 0 : isSorted ? positions.value(font->id()) : first + i;
        fontJson.write(json, *font, position);
    }
    json.endArray();
}

DeferredResourceHandler::Answer FontResourceHandler::Listing::answer() const
{
    Answer answer = json(body);
    if (paging.isOn())
        answer.headers.insert(QStringLiteral("Link"), linkHeader(linkUrl, paging, count));
    if (paging.isPastEnd(count))
        answer.status = QHttpResponse::STATUS_NOT_FOUND;
    return answer;
}

FontResourceHandler::FontResourceHandler(const QSharedPointer<FontManagementService>& service)
    : DeferredLibraryHandler(service, {QHttpRequest::HTTP_DELETE, QHttpRequest::HTTP_GET, QHttpRequest::HTTP_POST})
{
}

std::shared_ptr<void> FontResourceHandler::begin(const QHttpRequest& request, const Reply& reply)
{
    switch (request.method()) {
    case QHttpRequest::HTTP_GET:
        return list(request, reply);
    case QHttpRequest::HTTP_POST:
        return changeActivity(request, reply);
    default:
        return removeFonts(request, reply);
    }
}

std::shared_ptr<void> FontResourceHandler::list(const QHttpRequest& request, const Reply& reply)
{
    const auto listing = std::make_shared<Listing>(service(), request, queryParameters(request.url()));
    // A search that fails has found nothing.
    if (const auto search = listing->selection.similaritySearch()) {
        return pendingWork().runCommand(search, [listing, reply](bool) {
            listing->write();
            reply(listing->answer());
        });
    }
    return pendingWork().runForFonts(
        catalogueSize(service()), [listing] { listing->write(); },
        [listing, reply](bool succeeded) {
            reply(succeeded ? listing->answer() : status(QHttpResponse::STATUS_INTERNAL_SERVER_ERROR));
        });
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

std::shared_ptr<void> FontResourceHandler::changeActivity(const QHttpRequest& request, const Reply& reply)
{
    const auto answer = [&reply](int code) {
        reply(status(code));
        return nullptr;
    };
    const auto object = jsonObject(request.body());
    if (pathSection(request.path(), 2) != QLatin1String("activity_change") || !object)
        return answer(QHttpResponse::STATUS_BAD_REQUEST);
    const int activityType = object->value(QLatin1String("activityType")).toInt(-1);
    if (activityType < kerval::systemfm::Inactive || activityType > kerval::systemfm::PermanentlyActive)
        return answer(QHttpResponse::STATUS_BAD_REQUEST);

    const FontSelection selection(service(), queryParameters(request.url()), FontSelection::Similarity::Ignored);
    const QList<int> ids = selection.fontIds();
    if (ids.isEmpty())
        return answer(QHttpResponse::STATUS_NOT_FOUND);

    const auto command = service().setFontActivityType(ids, kerval::systemfm::ActivityType(activityType));
    return replyAfter(command, reply, [command] {
        QList<ActivityChangeResult> results = command->results().values();
        std::sort(results.begin(), results.end(),
                  [](const ActivityChangeResult& a, const ActivityChangeResult& b) { return a.fontId < b.fontId; });
        QByteArray body;
        JsonWriter writer(body);
        writer.beginArray();
        for (const ActivityChangeResult& result : qAsConst(results)) {
            writer.beginObject();
            writer.member(QLatin1String("id"), result.fontId);
            writer.member(QLatin1String("errorCode"), result.error);
            writer.member(QLatin1String("conflictingFont"), result.conflictingFontId);
            writer.endObject();
        }
        writer.endArray();
        return json(body);
    });
}

std::shared_ptr<void> FontResourceHandler::removeFonts(const QHttpRequest& request, const Reply& reply)
{
    const auto selection =
        std::make_shared<FontSelection>(service(), queryParameters(request.url()), FontSelection::Similarity::Allowed);
    const auto search = selection->similaritySearch();
    if (!search)
        return removeSelected(*selection, reply);
    const auto removal = std::make_shared<std::shared_ptr<void>>();
    return pendingWork().runCommand(
        search, [this, selection, removal, reply](bool) { *removal = removeSelected(*selection, reply); });
}

std::shared_ptr<void> FontResourceHandler::removeSelected(const FontSelection& selection, const Reply& reply)
{
    const QList<int> ids = selection.fontIds();
    if (ids.isEmpty()) {
        reply(status(QHttpResponse::STATUS_NOT_FOUND));
        return nullptr;
    }
    // The command, because the features of the fonts go with them.
    return replyAfter(service().removeFonts(ids), reply, [] { return status(QHttpResponse::STATUS_NO_CONTENT); });
}

} // namespace api::rest
