#include "rest/GroupResourceHandler.h"

#include "qtService/app/service/FontManagementService.h"
#include "qtService/management/SystemFontGroupList.h"
#include "qtService/management/UserFontGroupList.h"
#include "rest/GroupJson.h"
#include "rest/http/QHttpResponse.h"

namespace api::rest {

GroupResourceHandler::GroupResourceHandler(const QSharedPointer<FontManagementService>& service)
    : GroupResourceHandler(service, {QHttpRequest::HTTP_GET, QHttpRequest::HTTP_POST})
{
}

GroupResourceHandler::GroupResourceHandler(const QSharedPointer<FontManagementService>& service, const Methods& methods)
    : LibraryResourceHandler(service, methods)
{
}

int GroupResourceHandler::get(QHttpRequest* request, Headers* headers, QByteArray* body)
{
    const auto asked = parseBool(queryParameters(request->url()).value(QStringLiteral("user_defined")));
    const auto systemGroups = service().systemFontGroups();
    const auto userGroups = service().userFontGroups();
    if (!systemGroups || !userGroups)
        return QHttpResponse::STATUS_SERVICE_UNAVAILABLE;
    QList<QSharedPointer<FontGroupList>> lists;
    if (!asked || !*asked)
        lists.append(systemGroups);
    if (!asked || *asked)
        lists.append(userGroups);

    JsonWriter json(*body);
    json.beginArray();
    for (const QSharedPointer<FontGroupList>& list : qAsConst(lists)) {
        const QList<int> ids = list->groupIdList();
        for (const int id : ids) {
            const FontGroupPtr group = list->group(id);
            if (group)
                writeGroup(json, id, *group, userGroups->containsGroup(id));
        }
    }
    json.endArray();
    setJsonType(headers);
    return QHttpResponse::STATUS_OK;
}

int GroupResourceHandler::post(QHttpRequest* request, Headers* headers, QByteArray* body)
{
    const auto object = jsonObject(request->body());
    const QString name = object ? object->value(QLatin1String("name")).toString() : QString();
    const auto userGroups = service().userFontGroups();
    if (!userGroups)
        return QHttpResponse::STATUS_SERVICE_UNAVAILABLE;
    const int id = name.isEmpty() ? 0 : service().addGroup(name);
    const FontGroupPtr group = id > 0 ? userGroups->group(id) : FontGroupPtr();
    if (!group)
        return QHttpResponse::STATUS_BAD_REQUEST;
    JsonWriter json(*body);
    writeGroup(json, id, *group, true);
    setJsonType(headers);
    return QHttpResponse::STATUS_CREATED;
}

} // namespace api::rest
