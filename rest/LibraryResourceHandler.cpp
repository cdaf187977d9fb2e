#include "rest/LibraryResourceHandler.h"

namespace api::rest {

LibraryResourceHandler::LibraryResourceHandler(const QSharedPointer<FontManagementService>& service,
                                               const Methods& methods)
    : ResourceHandler(methods)
    , m_service(service)
{
}

} // namespace api::rest
