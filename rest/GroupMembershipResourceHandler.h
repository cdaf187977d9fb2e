#pragma once

#include "rest/LibraryResourceHandler.h"

namespace api::rest {

// "/group_memberships": which font is in which group. DELETE without ids empties every user group.
class GroupMembershipResourceHandler : public LibraryResourceHandler
{
public:
    explicit GroupMembershipResourceHandler(const QSharedPointer<FontManagementService>& service);

protected:
    int get(QHttpRequest* request, Headers* headers, QByteArray* body) override;
    int post(QHttpRequest* request, Headers* headers, QByteArray* body) override;
    int remove(QHttpRequest* request, Headers* headers, QByteArray* body) override;
};

} // namespace api::rest
