#include "rest/Server.h"

namespace api::rest {

void Server::addResources(const QSharedPointer<FontManagementService>&) {}

} // namespace api::rest
