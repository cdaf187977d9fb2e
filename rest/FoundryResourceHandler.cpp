#include "rest/FoundryResourceHandler.h"

#include "qtService/app/service/FontManagementService.h"
#include "qtService/database/KrvFontRepository.h"
#include "rest/JsonWriter.h"
#include "rest/http/QHttpResponse.h"

#include <algorithm>

namespace api::rest {

FoundryResourceHandler::FoundryResourceHandler(const QSharedPointer<FontManagementService>& service)
    : LibraryResourceHandler(service, {QHttpRequest::HTTP_GET})
{
}

int FoundryResourceHandler::get(QHttpRequest*, Headers* headers, QByteArray* body)
{
    const auto repository = service().repository();
    QStringList names = repository ? repository->foundries() : QStringList();
    names.removeAll(QString());
    std::sort(names.begin(), names.end());
    JsonWriter json(*body);
    json.beginArray();
    for (const QString& name : qAsConst(names))
        json.value(name);
    json.endArray();
    setJsonType(headers);
    return QHttpResponse::STATUS_OK;
}

} // namespace api::rest
