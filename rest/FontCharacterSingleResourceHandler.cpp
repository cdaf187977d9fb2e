#include "rest/FontCharacterSingleResourceHandler.h"

#include "qtService/app/service/FontManagementService.h"
#include "qtService/database/KrvFontRepository.h"
#include "rest/CharactersJson.h"
#include "rest/http/QHttpResponse.h"

namespace api::rest {

FontCharacterSingleResourceHandler::FontCharacterSingleResourceHandler(
    const QSharedPointer<FontManagementService>& service)
    : LibraryResourceHandler(service, {QHttpRequest::HTTP_GET})
{
}

int FontCharacterSingleResourceHandler::get(QHttpRequest* request, Headers* headers, QByteArray* body)
{
    const auto repository = service().repository();
    const StaticFontPtr font = repository ? repository->font(idFromPath(request->path())) : StaticFontPtr();
    JsonWriter json(*body);
    if (!writeCharacters(json, font.data())) {
        body->clear();
        return QHttpResponse::STATUS_NOT_FOUND;
    }
    setJsonType(headers);
    return QHttpResponse::STATUS_OK;
}

} // namespace api::rest
