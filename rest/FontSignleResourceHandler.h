#pragma once

#include "rest/LibraryResourceHandler.h"

namespace api::rest {

// "/fonts/{id}": shows one font, edits the user's fields of it, removes it, shows its file in the file manager.
class FontSignleResourceHandler : public LibraryResourceHandler
{
public:
    explicit FontSignleResourceHandler(const QSharedPointer<FontManagementService>& service);

protected:
    int get(QHttpRequest* request, Headers* headers, QByteArray* body) override;
    int post(QHttpRequest* request, Headers* headers, QByteArray* body) override;
    int remove(QHttpRequest* request, Headers* headers, QByteArray* body) override;
    int patch(QHttpRequest* request, Headers* headers, QByteArray* body) override;
};

} // namespace api::rest
