#include "rest/FontCharacterResourceHandler.h"

#include "qtService/app/service/FontManagementService.h"
#include "qtService/database/KrvFontRepository.h"
#include "rest/CharactersJson.h"
#include "rest/http/QHttpResponse.h"

#include <memory>

namespace api::rest {

namespace {

constexpr int pieceSize = 512 * 1024;

} // namespace

FontCharacterResourceHandler::FontCharacterResourceHandler(const QSharedPointer<FontManagementService>& service)
    : LibraryResourceHandler(service, {QHttpRequest::HTTP_GET})
{
}

int FontCharacterResourceHandler::get(QHttpRequest*, Headers* headers, QByteArray*)
{
    setJsonType(headers);
    return QHttpResponse::STATUS_OK;
}

StreamedBody::NextPiece FontCharacterResourceHandler::body(const QHttpRequest&)
{
    struct Progress
    {
        QSharedPointer<KrvFontRepository> repository;
        QList<int> ids;
        int next = 0;
        bool isEnded = false;
    };
    const auto progress = std::make_shared<Progress>();
    progress->repository = service().repository();
    if (progress->repository)
        progress->ids = progress->repository->fontIdList();
    return [progress] {
        QByteArray piece;
        if (progress->isEnded)
            return piece;
        if (progress->next == 0)
            piece.append('[');
        while (progress->next < progress->ids.size() && piece.size() < pieceSize) {
            const int id = progress->ids.at(progress->next);
            if (progress->next++ > 0)
                piece.append(',');
            JsonWriter json(piece);
            json.beginObject();
            json.member(QLatin1String("id"), id);
            json.key(QLatin1String("characters"));
            writeCharacters(json, progress->repository->font(id).data());
            json.endObject();
        }
        progress->isEnded = progress->next == progress->ids.size();
        if (progress->isEnded)
            piece.append(']');
        return piece;
    };
}

} // namespace api::rest
