#pragma once

#include "rest/DeferredLibraryHandler.h"

namespace api::rest {

// "/group_memberships": which font is in which group. DELETE without ids empties every user group.
class GroupMembershipResourceHandler : public DeferredLibraryHandler
{
public:
    explicit GroupMembershipResourceHandler(const QSharedPointer<FontManagementService>& service);

    std::shared_ptr<void> begin(const QHttpRequest& request, const Reply& reply) override;

private:
    std::shared_ptr<void> list(const QHttpRequest& request, const Reply& reply);
    std::shared_ptr<void> add(const QHttpRequest& request, const Reply& reply);
    std::shared_ptr<void> removeMemberships(const QHttpRequest& request, const Reply& reply);
};

} // namespace api::rest
