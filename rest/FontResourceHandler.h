#pragma once

#include "rest/DeferredLibraryHandler.h"
#include "rest/FontQuery.h"

namespace api::rest {

class FontSelection;

// "/fonts": lists the fonts that the query selects, changes their activity, removes them.
class FontResourceHandler : public DeferredLibraryHandler
{
public:
    explicit FontResourceHandler(const QSharedPointer<FontManagementService>& service);

    std::shared_ptr<void> begin(const QHttpRequest& request, const Reply& reply) override;

private:
    struct Listing;

    std::shared_ptr<void> list(const QHttpRequest& request, const Reply& reply);
    std::shared_ptr<void> changeActivity(const QHttpRequest& request, const Reply& reply);
    std::shared_ptr<void> removeFonts(const QHttpRequest& request, const Reply& reply);
    std::shared_ptr<void> removeSelected(const FontSelection& selection, const Reply& reply);
    static QString linkHeader(const QUrl& url, const Paging& paging, int count);
};

} // namespace api::rest
