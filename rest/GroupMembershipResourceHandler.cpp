#include "rest/GroupMembershipResourceHandler.h"

#include "qtService/app/service/FontManagementService.h"
#include "qtService/database/KrvFontRepository.h"
#include "qtService/database/KrvUserDatabase.h"
#include "qtService/management/SystemFontGroupList.h"
#include "qtService/management/UserFontGroupList.h"
#include "rest/JsonWriter.h"
#include "rest/http/QHttpResponse.h"

#include <QSet>

#include <optional>

namespace api::rest {

namespace {

struct Ids
{
    QList<int> groups;
    QList<int> fonts;
};

void writeMembership(JsonWriter& json, int groupId, int fontId)
{
    json.beginObject();
    json.member(QLatin1String("groupId"), groupId);
    json.member(QLatin1String("fontId"), fontId);
    json.member(QLatin1String("id"), QString(QString::number(groupId) + QLatin1Char(';') + QString::number(fontId)));
    json.endObject();
}

// The section behind "/group_memberships/" as a pair of ids; nothing when it is none.
std::optional<Ids> idsFromItem(const QString& item)
{
    const QStringList parts = item.split(QLatin1Char(';'));
    const int groupId = parts.value(0).toInt();
    const int fontId = parts.value(1).toInt();
    if (parts.size() != 2 || groupId <= 0 || fontId <= 0)
        return std::nullopt;
    return Ids{{groupId}, {fontId}};
}

// For deleting: what is given must be numbers throughout. An empty or unreadable list would otherwise say "all".
std::optional<QList<int>> strictList(const QHash<QString, QString>& parameters, const QString& key)
{
    QList<int> list;
    const auto given = parameters.constFind(key);
    if (given == parameters.constEnd())
        return list;
    const QStringList parts = given->split(QLatin1Char(','));
    for (const QString& part : parts) {
        bool isNumber = false;
        list.append(part.toInt(&isNumber));
        if (!isNumber)
            return std::nullopt;
    }
    return list;
}

std::optional<Ids> idsFromQuery(const QUrl& url)
{
    const QHash<QString, QString> parameters = ResourceHandler::queryParameters(url);
    const auto groups = strictList(parameters, QStringLiteral("groupId"));
    const auto fonts = strictList(parameters, QStringLiteral("fontId"));
    if (!groups || !fonts)
        return std::nullopt;
    return Ids{*groups, *fonts};
}

// The user's groups that hold any of the fonts. To ask all groups to give them up would cost each a transaction.
QList<int> groupsHolding(const QList<int>& fontIds, const KrvFontRepository& repository,
                         const KrvUserDatabase& userDatabase)
{
    KrvUserDatabase::GroupFilter filter;
    for (const int fontId : fontIds) {
        if (const StaticFontPtr font = repository.font(fontId))
            filter.fontHashes.append(font->fontHash());
    }
    QList<int> ids;
    if (filter.fontHashes.isEmpty())
        return ids;
    for (const KrvUserDatabase::Group& group : userDatabase.groups(filter))
        ids.append(group.id);
    return ids;
}

} // namespace

GroupMembershipResourceHandler::GroupMembershipResourceHandler(const QSharedPointer<FontManagementService>& service)
    : DeferredLibraryHandler(service, {QHttpRequest::HTTP_GET, QHttpRequest::HTTP_POST, QHttpRequest::HTTP_DELETE})
{
}

std::shared_ptr<void> GroupMembershipResourceHandler::begin(const QHttpRequest& request, const Reply& reply)
{
    switch (request.method()) {
    case QHttpRequest::HTTP_GET:
        return list(request, reply);
    case QHttpRequest::HTTP_POST:
        return add(request, reply);
    default:
        return removeMemberships(request, reply);
    }
}

std::shared_ptr<void> GroupMembershipResourceHandler::list(const QHttpRequest& request, const Reply& reply)
{
    const QHash<QString, QString> parameters = queryParameters(request.url());
    const QList<int> groupIds = numberList(parameters.value(QStringLiteral("groupId")));
    const QList<int> fontIdList = numberList(parameters.value(QStringLiteral("fontId")));
    const QSet<int> fontIds(fontIdList.cbegin(), fontIdList.cend());
    const QList<QSharedPointer<FontGroupList>> lists{service().systemFontGroups(), service().userFontGroups()};
    const auto repository = service().repository();
    if (!repository || lists.contains({})) {
        reply(status(QHttpResponse::STATUS_SERVICE_UNAVAILABLE));
        return nullptr;
    }

    const auto body = std::make_shared<QByteArray>();
    const auto write = [groupIds, fontIds, lists, body] {
        JsonWriter json(*body);
        json.beginArray();
        for (const QSharedPointer<FontGroupList>& list : lists) {
            const QList<int> ids = list->groupIdList();
            for (const int id : ids) {
                if (!groupIds.isEmpty() && !groupIds.contains(id))
                    continue;
                const FontGroupPtr group = list->group(id);
                const QList<int> members = group ? group->fontIdList() : QList<int>();
                for (const int fontId : members) {
                    if (fontIds.isEmpty() || fontIds.contains(fontId))
                        writeMembership(json, id, fontId);
                }
            }
        }
        json.endArray();
    };
    return pendingWork().runForFonts(repository->fontCount(), write, [body, reply](bool succeeded) {
        reply(succeeded ? json(*body) : status(QHttpResponse::STATUS_INTERNAL_SERVER_ERROR));
    });
}

std::shared_ptr<void> GroupMembershipResourceHandler::add(const QHttpRequest& request, const Reply& reply)
{
    const auto object = jsonObject(request.body());
    const int groupId = object ? object->value(QLatin1String("groupId")).toInt() : 0;
    const int fontId = object ? object->value(QLatin1String("fontId")).toInt() : 0;
    if (groupId < 1 || fontId < 1) {
        reply(status(QHttpResponse::STATUS_BAD_REQUEST));
        return nullptr;
    }
    // The command passes over fonts that are not catalogued; the client is told that nothing was added.
    const auto repository = service().repository();
    if (!repository || !repository->containsFont(fontId)) {
        reply(status(QHttpResponse::STATUS_INTERNAL_SERVER_ERROR));
        return nullptr;
    }
    return replyAfter(service().addFontsToGroups({groupId}, {fontId}), reply, [groupId, fontId] {
        QByteArray body;
        JsonWriter writer(body);
        writeMembership(writer, groupId, fontId);
        return json(body);
    });
}

std::shared_ptr<void> GroupMembershipResourceHandler::removeMemberships(const QHttpRequest& request, const Reply& reply)
{
    const auto answer = [&reply](int code) {
        reply(status(code));
        return nullptr;
    };
    const QString item = request.path().section(QLatin1Char('/'), 2);
    const QString pair = item.endsWith(QLatin1Char('/')) ? item.chopped(1) : item;
    const std::optional<Ids> given = pair.isEmpty() ? idsFromQuery(request.url()) : idsFromItem(pair);
    if (!given)
        return answer(QHttpResponse::STATUS_BAD_REQUEST);

    const auto userGroups = service().userFontGroups();
    const auto repository = service().repository();
    KrvUserDatabase* const userDatabase = service().userDatabase();
    if (!userGroups || !repository || !userDatabase)
        return answer(QHttpResponse::STATUS_SERVICE_UNAVAILABLE);
    QList<int> groupIds = given->groups.isEmpty() ? userGroups->groupIdList() : given->groups;
    if (groupIds.isEmpty())
        return answer(QHttpResponse::STATUS_BAD_REQUEST);
    if (given->groups.isEmpty() && !given->fonts.isEmpty())
        groupIds = groupsHolding(given->fonts, *repository, *userDatabase);
    if (given->fonts.isEmpty()) {
        return answer(userDatabase->clearGroups(groupIds) ? QHttpResponse::STATUS_NO_CONTENT
                                                          : QHttpResponse::STATUS_INTERNAL_SERVER_ERROR);
    }
    return replyAfter(service().removeFontsFromGroups(groupIds, given->fonts), reply,
                      [] { return status(QHttpResponse::STATUS_NO_CONTENT); });
}

} // namespace api::rest
