#include "rest/Server.h"

#include "qtService/app/service/FontManagementService.h"
#include "rest/CharacterPreviewResourceHandler.h"
#include "rest/FontCharacterResourceHandler.h"
#include "rest/FontCharacterSingleResourceHandler.h"
#include "rest/FontResourceHandler.h"
#include "rest/FontSignleResourceHandler.h"
#include "rest/FoundryResourceHandler.h"
#include "rest/GroupMembershipResourceHandler.h"
#include "rest/GroupResourceHandler.h"
#include "rest/GroupSingleResourceHandler.h"
#include "rest/PreviewResourceHandler.h"

namespace api::rest {

void Server::addResources(const QSharedPointer<FontManagementService>& service)
{
    addRoute("/fonts(/\\D+)?/?", new FontResourceHandler(service), true);
    addRoute("/fonts/\\d+(/\\D+)?/?", new FontSignleResourceHandler(service), true);
    addRoute("/groups/?", new GroupResourceHandler(service), true);
    addRoute("/groups/-?\\d+/?", new GroupSingleResourceHandler(service), true);
    addRoute("/group_memberships(/.+)?/?", new GroupMembershipResourceHandler(service), true);
    addRoute("/foundries/?", new FoundryResourceHandler(service), true);
    addRoute("/characters/?", new FontCharacterResourceHandler(service), true);
    addRoute("/characters/\\d+/?", new FontCharacterSingleResourceHandler(service), true);
    addRoute("/text-previews/?", new PreviewResourceHandler(service), true);
    addRoute("/character-previews/?", new CharacterPreviewResourceHandler(service), true);
}

bool Server::isLibraryOpen() const
{
    return m_service && m_service->isStarted();
}

} // namespace api::rest
