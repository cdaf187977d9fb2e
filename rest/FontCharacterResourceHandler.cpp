#include "rest/FontCharacterResourceHandler.h"

#include "qtService/app/service/FontManagementService.h"
#include "qtService/database/KrvFontRepository.h"
#include "rest/CharactersJson.h"
#include "rest/http/QHttpResponse.h"
#include "rest/waiting.h"

namespace api::rest {

FontCharacterResourceHandler::FontCharacterResourceHandler(const QSharedPointer<FontManagementService>& service)
    : LibraryResourceHandler(service, {QHttpRequest::HTTP_GET})
{
}

int FontCharacterResourceHandler::get(QHttpRequest*, Headers* headers, QByteArray* body)
{
    const auto repository = service().repository();
    runInBackground([&] {
        JsonWriter json(*body);
        json.beginArray();
        const QList<int> ids = repository ? repository->fontIdList() : QList<int>();
        for (const int id : ids) {
            json.beginObject();
            json.member(QLatin1String("id"), id);
            json.key(QLatin1String("characters"));
            writeCharacters(json, repository->font(id).data());
            json.endObject();
        }
        json.endArray();
    });
    setJsonType(headers);
    return QHttpResponse::STATUS_OK;
}

} // namespace api::rest
