#pragma once

#include "rest/LibraryResourceHandler.h"

namespace api::rest {

// "/groups": lists the groups and makes user groups.
class GroupResourceHandler : public LibraryResourceHandler
{
public:
    explicit GroupResourceHandler(const QSharedPointer<FontManagementService>& service);

protected:
    GroupResourceHandler(const QSharedPointer<FontManagementService>& service, const Methods& methods);

    int get(QHttpRequest* request, Headers* headers, QByteArray* body) override;
    int post(QHttpRequest* request, Headers* headers, QByteArray* body) override;
};

} // namespace api::rest
