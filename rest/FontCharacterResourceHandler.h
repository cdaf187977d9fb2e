#pragma once

#include "rest/LibraryResourceHandler.h"
#include "rest/StreamedBody.h"

namespace api::rest {

// "/characters": what every catalogued font covers. Opens each font file, so it takes its time, and comes to some ten
// kilobytes for each: the body is made while it is sent.
class FontCharacterResourceHandler : public LibraryResourceHandler, public StreamedBody
{
public:
    explicit FontCharacterResourceHandler(const QSharedPointer<FontManagementService>& service);

    NextPiece body(const QHttpRequest& request) override;

protected:
    int get(QHttpRequest* request, Headers* headers, QByteArray* body) override;
};

} // namespace api::rest
