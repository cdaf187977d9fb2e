#pragma once

#include "rest/GroupResourceHandler.h"

namespace api::rest {

// "/groups/{id}": shows, renames and deletes one group. POST makes a new group, as it does without an id.
class GroupSingleResourceHandler : public GroupResourceHandler
{
public:
    explicit GroupSingleResourceHandler(const QSharedPointer<FontManagementService>& service);

protected:
    int get(QHttpRequest* request, Headers* headers, QByteArray* body) override;
    int put(QHttpRequest* request, Headers* headers, QByteArray* body) override;
    int remove(QHttpRequest* request, Headers* headers, QByteArray* body) override;
};

} // namespace api::rest
