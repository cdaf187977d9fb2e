#include "qtService/app/ServiceResourceHandler.h"

#include "qtService/app/FMService.h"
#include "rest/http/QHttpRequest.h"

#include <QClipboard>

namespace {

// The section of "/service/<action>" that holds the action.
constexpr int actionSection = 2;

} // namespace

ServiceResourceHandler::ServiceResourceHandler(FMService* service)
    : ResourceHandler({QHttpRequest::HTTP_GET, QHttpRequest::HTTP_POST})
    , m_service(service)
{
}

int ServiceResourceHandler::get(QHttpRequest* request, Headers*, QByteArray* body)
{
    if (!pathSection(request->path(), actionSection).isEmpty())
        return 404;
    *body = QByteArrayLiteral("{\"version\":") + QByteArray::number(m_service->versionNumber()) +
            QByteArrayLiteral(",\"user_id\":\"") + m_service->userId().toLatin1() + QByteArrayLiteral("\"}");
    return 200;
}

int ServiceResourceHandler::post(QHttpRequest* request, Headers*, QByteArray*)
{
    const QString name = pathSection(request->path(), actionSection);
    if (name == QLatin1String("launchFontManager")) {
        m_service->onShowFontManagerTriggered();
        return 204;
    }
    if (name == QLatin1String("copyToClipboard")) {
        QApplication::clipboard()->setText(QString::fromUtf8(request->body()));
        return 204;
    }
    return 400;
}
