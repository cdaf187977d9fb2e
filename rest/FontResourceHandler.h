#pragma once

#include "rest/FontQuery.h"
#include "rest/LibraryResourceHandler.h"

namespace api::rest {

// "/fonts": lists the fonts that the query selects, changes their activity, removes them.
class FontResourceHandler : public LibraryResourceHandler
{
public:
    explicit FontResourceHandler(const QSharedPointer<FontManagementService>& service);

protected:
    int get(QHttpRequest* request, Headers* headers, QByteArray* body) override;
    int post(QHttpRequest* request, Headers* headers, QByteArray* body) override;
    int remove(QHttpRequest* request, Headers* headers, QByteArray* body) override;

private:
    static QString linkHeader(const QUrl& url, const Paging& paging, int count);
};

} // namespace api::rest
