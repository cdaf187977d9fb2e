#pragma once

#include "rest/LibraryResourceHandler.h"

namespace api::rest {

// "/characters": what every catalogued font covers. Opens each font file, so it takes its time; the window goes on.
class FontCharacterResourceHandler : public LibraryResourceHandler
{
public:
    explicit FontCharacterResourceHandler(const QSharedPointer<FontManagementService>& service);

protected:
    int get(QHttpRequest* request, Headers* headers, QByteArray* body) override;
};

} // namespace api::rest
