#include "rest/PreviewResourceHandler.h"

#include "fontfile/KrvFontPainter.h"
#include "qtService/database/StaticFont.h"
#include "rest/http/QHttpResponse.h"

namespace api::rest {

PreviewResourceHandler::PreviewResourceHandler(const QSharedPointer<FontManagementService>& service)
    : AbstractPreviewResourceHandler(service)
{
}

int PreviewResourceHandler::get(QHttpRequest* request, Headers* headers, QByteArray* body)
{
    const int status = AbstractPreviewResourceHandler::get(request, headers, body);
    if (status == QHttpResponse::STATUS_OK)
        headers->insert(QStringLiteral("Cache-Control"), QStringLiteral("public"));
    return status;
}

QImage PreviewResourceHandler::draw(const fms::StaticFont& font, const Parameters& parameters) const
{
    const QString text = parameters.value(QStringLiteral("text"));
    const int height = parameters.value(QStringLiteral("imageHeight")).toInt();
    if (height == 0)
        return drawText(font, text, pixelSize(parameters));
    return drawAtHeight(font, text, height);
}

QImage PreviewResourceHandler::drawAtHeight(const fms::StaticFont& font, const QString& text, int height)
{
    QImage image;
    if (text.isEmpty() || text.size() > maximumLength || height < 0 || height > maximumSide)
        return image;
    PixelSizePreviewRequest preview;
    preview.text = text;
    preview.correction = KrvFontMetrics::MetricsCorrection::fromString(font.fullMetricsCorrection());
    KrvFontPainter::renderAtHeight(font.fileName(), preview, height, &image, font.faceIndex());
    return image;
}

} // namespace api::rest
