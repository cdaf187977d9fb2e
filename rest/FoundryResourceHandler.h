#pragma once

#include "rest/LibraryResourceHandler.h"

namespace api::rest {

// "/foundries": the distinct foundry names, capitals before small letters.
class FoundryResourceHandler : public LibraryResourceHandler
{
public:
    explicit FoundryResourceHandler(const QSharedPointer<FontManagementService>& service);

protected:
    int get(QHttpRequest* request, Headers* headers, QByteArray* body) override;
};

} // namespace api::rest
