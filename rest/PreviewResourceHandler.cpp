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
    preview.pixelSize = qMax(1, qRound(height / 1.5)); // the image is one and a half times as high
    preview.text = text;
    preview.correction = KrvFontMetrics::MetricsCorrection::fromString(font.fullMetricsCorrection());
    if (!KrvFontPainter::renderPixelPreview(font.fileName(), preview, &image, font.faceIndex()))
        return QImage();
    if (image.isNull()) {
        QImage empty(1, height, QImage::Format_ARGB32);
        empty.fill(Qt::transparent);
        return empty;
    }
    if (image.height() > height)
        return image.scaledToHeight(height, Qt::SmoothTransformation);
    if (image.height() < height)
        return image.copy(0, -((height - image.height()) / 2), image.width(), height);
    return image;
}

} // namespace api::rest
