#pragma once

#include "rest/DeferredResourceHandler.h"
#include "rest/PendingWork.h"

#include <QSharedPointer>

class FontManagementService;

namespace api::rest {

// Base of the handlers that wait for commands of the font library or for work on many of its fonts.
class DeferredLibraryHandler : public DeferredResourceHandler
{
protected:
    DeferredLibraryHandler(const QSharedPointer<FontManagementService>& service, const Methods& methods);

    FontManagementService& service() const { return *m_service; }
    PendingWork& pendingWork() { return m_pendingWork; }
    // Replies with `success` when the command finishes, with 500 when it does not or there is none.
    std::shared_ptr<void> replyAfter(const QSharedPointer<AbstractAsynchronousCommand>& command, const Reply& reply,
                                     const std::function<Answer()>& success);

    static Answer status(int code);
    static Answer json(const QByteArray& body);

private:
    QSharedPointer<FontManagementService> m_service;
    PendingWork m_pendingWork;
};

} // namespace api::rest
