#include "rest/FontSignleResourceHandler.h"

#include "qtService/app/service/FontManagementService.h"
#include "qtService/database/KrvFontRepository.h"
#include "qtService/management/platform_showfile.h"
#include "rest/FontJson.h"
#include "rest/http/QHttpResponse.h"

#include <QJsonObject>

namespace api::rest {

namespace {

StaticFontPtr fontById(const FontManagementService& service, int id)
{
    const auto repository = service.repository();
    return repository ? repository->font(id) : StaticFontPtr();
}

} // namespace

FontSignleResourceHandler::FontSignleResourceHandler(const QSharedPointer<FontManagementService>& service)
    : DeferredLibraryHandler(service, {QHttpRequest::HTTP_DELETE, QHttpRequest::HTTP_GET, QHttpRequest::HTTP_POST,
                                       QHttpRequest::HTTP_PATCH})
{
}

int FontSignleResourceHandler::get(QHttpRequest* request, Headers* headers, QByteArray* body)
{
    const StaticFontPtr font = fontById(service(), idFromPath(request->path()));
    if (!font)
        return QHttpResponse::STATUS_NOT_FOUND;
    JsonWriter json(*body);
    FontJson(service(), requestOrigin(*request)).write(json, *font);
    setJsonType(headers);
    return QHttpResponse::STATUS_OK;
}

int FontSignleResourceHandler::post(QHttpRequest* request, Headers*, QByteArray*)
{
    if (pathSection(request->path(), 3) != QLatin1String("reveal"))
        return QHttpResponse::STATUS_BAD_REQUEST;
    const StaticFontPtr font = fontById(service(), pathSection(request->path(), 2).toInt());
    if (!font)
        return QHttpResponse::STATUS_NOT_FOUND;
    krv::platform::showInFileManager(font->fileName());
    return QHttpResponse::STATUS_NO_CONTENT;
}

bool FontSignleResourceHandler::defers(QHttpRequest::HttpMethod method) const
{
    return method == QHttpRequest::HTTP_DELETE;
}

std::shared_ptr<void> FontSignleResourceHandler::begin(const QHttpRequest& request, const Reply& reply)
{
    const int id = idFromPath(request.path());
    if (!fontById(service(), id)) {
        reply(status(QHttpResponse::STATUS_BAD_REQUEST));
        return nullptr;
    }
    return replyAfter(service().removeFonts({id}), reply, [] { return status(QHttpResponse::STATUS_NO_CONTENT); });
}

int FontSignleResourceHandler::patch(QHttpRequest* request, Headers*, QByteArray*)
{
    const auto object = jsonObject(request->body());
    const StaticFontPtr font = fontById(service(), idFromPath(request->path()));
    if (!object || object->isEmpty() || !font)
        return QHttpResponse::STATUS_BAD_REQUEST;

    // Everything is looked at before anything is set: a refused request changes nothing, not even in memory.
    const QString hidden = QStringLiteral("isHidden");
    const QString note = QStringLiteral("userNote");
    for (auto member = object->constBegin(); member != object->constEnd(); ++member) {
        const bool isEditable =
            (member.key() == hidden && member->isBool()) || (member.key() == note && member->isString());
        if (!isEditable)
            return QHttpResponse::STATUS_BAD_REQUEST;
    }
    if (object->contains(hidden))
        font->setIsHidden(object->value(hidden).toBool());
    if (object->contains(note))
        font->setUserNote(object->value(note).toString());
    const auto repository = service().repository();
    if (!repository || !repository->updateFonts({font}, object->keys()))
        return QHttpResponse::STATUS_INTERNAL_SERVER_ERROR;
    return QHttpResponse::STATUS_NO_CONTENT;
}

} // namespace api::rest
