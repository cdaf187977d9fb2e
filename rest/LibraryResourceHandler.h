#pragma once

#include "rest/ResourceHandler.h"

#include <QSharedPointer>

class FontManagementService;

namespace api::rest {

// Base of the handlers that work on the font library.
class LibraryResourceHandler : public ResourceHandler
{
protected:
    LibraryResourceHandler(const QSharedPointer<FontManagementService>& service, const Methods& methods);

    FontManagementService& service() const { return *m_service; }

private:
    QSharedPointer<FontManagementService> m_service;
};

} // namespace api::rest
