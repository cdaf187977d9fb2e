#include "rest/DeferredLibraryHandler.h"

#include "rest/http/QHttpResponse.h"

namespace api::rest {

DeferredLibraryHandler::DeferredLibraryHandler(const QSharedPointer<FontManagementService>& service,
                                               const Methods& methods)
    : DeferredResourceHandler(methods)
    , m_service(service)
{
}

std::shared_ptr<void> DeferredLibraryHandler::replyAfter(const QSharedPointer<AbstractAsynchronousCommand>& command,
                                                         const Reply& reply, const std::function<Answer()>& success)
{
    if (!command) {
        reply(status(QHttpResponse::STATUS_INTERNAL_SERVER_ERROR));
        return nullptr;
    }
    return m_pendingWork.runCommand(command, [reply, success](bool succeeded) {
        reply(succeeded ? success() : status(QHttpResponse::STATUS_INTERNAL_SERVER_ERROR));
    });
}

DeferredResourceHandler::Answer DeferredLibraryHandler::status(int code)
{
    Answer answer;
    answer.status = code;
    return answer;
}

DeferredResourceHandler::Answer DeferredLibraryHandler::json(const QByteArray& body)
{
    Answer answer = status(QHttpResponse::STATUS_OK);
    setJsonType(&answer.headers);
    answer.body = body;
    return answer;
}

} // namespace api::rest
