#include "rest/PreviewResourceHandler.h"

#include "fontfile/KrvFontFile.h"
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
    if (KrvFontPainter::renderAtHeight(font.fileName(), preview, height, &image, font.faceIndex()))
        return image;
    // A font whose file is gone or broken leaves its row empty, like one without these characters; what is refused is
    // a text that would need too large a picture.
    if (!KrvFontFile(font.fileName()).open(font.faceIndex())) {
        image = QImage(1, height, QImage::Format_ARGB32);
        image.fill(Qt::transparent);
    }
    return image;
}

} // namespace api::rest
