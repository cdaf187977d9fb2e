#pragma once

#include "rest/LibraryResourceHandler.h"

namespace api::rest {

// "/characters/{id}": what one font covers.
class FontCharacterSingleResourceHandler : public LibraryResourceHandler
{
public:
    explicit FontCharacterSingleResourceHandler(const QSharedPointer<FontManagementService>& service);

protected:
    int get(QHttpRequest* request, Headers* headers, QByteArray* body) override;
};

} // namespace api::rest
