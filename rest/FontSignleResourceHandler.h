#pragma once

#include "rest/DeferredLibraryHandler.h"

namespace api::rest {

// "/fonts/{id}": shows one font, edits the user's fields of it, removes it, shows its file in the file manager.
class FontSignleResourceHandler : public DeferredLibraryHandler
{
public:
    explicit FontSignleResourceHandler(const QSharedPointer<FontManagementService>& service);

    // Removing is, for which the features of the font go too.
    bool defers(QHttpRequest::HttpMethod method) const override;
    std::shared_ptr<void> begin(const QHttpRequest& request, const Reply& reply) override;

protected:
    int get(QHttpRequest* request, Headers* headers, QByteArray* body) override;
    int post(QHttpRequest* request, Headers* headers, QByteArray* body) override;
    int patch(QHttpRequest* request, Headers* headers, QByteArray* body) override;
};

} // namespace api::rest
