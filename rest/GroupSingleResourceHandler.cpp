#include "rest/GroupSingleResourceHandler.h"

#include "qtService/app/service/FontManagementService.h"
#include "qtService/management/SystemFontGroupList.h"
#include "qtService/management/UserFontGroupList.h"
#include "rest/GroupJson.h"
#include "rest/http/QHttpResponse.h"

namespace api::rest {

GroupSingleResourceHandler::GroupSingleResourceHandler(const QSharedPointer<FontManagementService>& service)
    : GroupResourceHandler(
          service, {QHttpRequest::HTTP_GET, QHttpRequest::HTTP_PUT, QHttpRequest::HTTP_POST, QHttpRequest::HTTP_DELETE})
{
}

int GroupSingleResourceHandler::get(QHttpRequest* request, Headers* headers, QByteArray* body)
{
    const auto systemGroups = service().systemFontGroups();
    const auto userGroups = service().userFontGroups();
    if (!systemGroups || !userGroups)
        return QHttpResponse::STATUS_SERVICE_UNAVAILABLE;
    const int id = idFromPath(request->path());
    FontGroupPtr group;
    if (id < 0)
        group = systemGroups->group(id);
    else if (id > 0)
        group = userGroups->group(id);
    if (!group)
        return QHttpResponse::STATUS_NOT_FOUND;
    JsonWriter json(*body);
    writeGroup(json, id, *group, userGroups->containsGroup(id));
    setJsonType(headers);
    return QHttpResponse::STATUS_OK;
}

int GroupSingleResourceHandler::put(QHttpRequest* request, Headers* headers, QByteArray* body)
{
    const auto object = jsonObject(request->body());
    if (!object)
        return QHttpResponse::STATUS_BAD_REQUEST;
    const QString name = object->value(QLatin1String("name")).toString();
    const int id = object->value(QLatin1String("id")).toInt();
    if (name.isEmpty() || id < 1 || id != idFromPath(request->path()))
        return QHttpResponse::STATUS_BAD_REQUEST;
    const auto userGroups = service().userFontGroups();
    const FontGroupPtr group = userGroups && service().renameGroup(id, name) ? userGroups->group(id) : FontGroupPtr();
    if (!group)
        return QHttpResponse::STATUS_INTERNAL_SERVER_ERROR;
    JsonWriter json(*body);
    writeGroup(json, id, *group, true);
    setJsonType(headers);
    return QHttpResponse::STATUS_OK;
}

int GroupSingleResourceHandler::remove(QHttpRequest* request, Headers*, QByteArray*)
{
    const int id = idFromPath(request->path());
    return id > 0 && service().removeGroup(id) ? QHttpResponse::STATUS_NO_CONTENT : QHttpResponse::STATUS_BAD_REQUEST;
}

} // namespace api::rest
