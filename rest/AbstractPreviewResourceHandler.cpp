#include "rest/AbstractPreviewResourceHandler.h"

#include "fontfile/KrvFontPainter.h"
#include "qtService/app/service/FontManagementService.h"
#include "qtService/database/KrvFontRepository.h"
#include "rest/http/QHttpResponse.h"

#include <QBuffer>
#include <QDateTime>
#include <QLocale>

namespace api::rest {

AbstractPreviewResourceHandler::AbstractPreviewResourceHandler(const QSharedPointer<FontManagementService>& service)
    : LibraryResourceHandler(service, {QHttpRequest::HTTP_GET})
{
    m_invertedColors.reserve(256);
    for (int alpha = 0; alpha < 256; ++alpha)
        m_invertedColors.append(qRgba(255, 255, 255, alpha));
}

int AbstractPreviewResourceHandler::get(QHttpRequest* request, Headers* headers, QByteArray* body)
{
    const Parameters parameters = queryParameters(request->url());
    const auto repository = service().repository();
    const int id = parameters.value(QStringLiteral("fontId")).toInt();
    const StaticFontPtr font = repository ? repository->font(id) : StaticFontPtr();
    if (!font)
        return QHttpResponse::STATUS_NOT_FOUND;
    QImage image = draw(*font, parameters);
    if (image.isNull() || image.width() > maximumSide || image.height() > maximumSide)
        return QHttpResponse::STATUS_BAD_REQUEST;
    if (parameters.value(QStringLiteral("invert")) == QLatin1String("true"))
        invert(image);

    QBuffer buffer(body);
    if (!buffer.open(QIODevice::WriteOnly) || !image.save(&buffer, "PNG"))
        return QHttpResponse::STATUS_INTERNAL_SERVER_ERROR;
    headers->insert(QStringLiteral("Content-Type"), QStringLiteral("image/png"));
    // Local time under the name of another: clients have always been given it so.
    headers->insert(QStringLiteral("Expires"),
                    QLocale::c().toString(QDateTime::currentDateTime().addYears(1),
                                          QStringLiteral("ddd, dd MMM yyyy HH':'mm':'ss 'GMT'")));
    return QHttpResponse::STATUS_OK;
}

int AbstractPreviewResourceHandler::pixelSize(const Parameters& parameters)
{
    const int pixels = parameters.value(QStringLiteral("pixelSize")).toInt();
    if (pixels != 0)
        return pixels;
    const qint64 dpi = parameters.value(QStringLiteral("dpi")).toInt();
    const qint64 points = parameters.value(QStringLiteral("pointSize")).toInt();
    return int(qBound(qint64(-1), dpi * points / 72, qint64(maximumSide) + 1));
}

QImage AbstractPreviewResourceHandler::drawText(const fms::StaticFont& font, const QString& text, int pixelSize)
{
    QImage image;
    if (text.isEmpty() || text.size() > maximumLength || pixelSize <= 0 || pixelSize > maximumSide)
        return image;
    PointSizePreviewRequest preview;
    preview.dpi = 72; // where a point is a pixel
    preview.pointSize = pixelSize;
    preview.text = text;
    preview.color = 0xff000000;
    KrvFontPainter::renderPreview(font.fileName(), preview, &image, font.faceIndex(), nullptr,
                                  Qt::AlignTop | Qt::AlignLeft, false, 0.4);
    return image;
}

void AbstractPreviewResourceHandler::invert(QImage& image) const
{
    if (image.format() == QImage::Format_Indexed8)
        image.setColorTable(m_invertedColors);
    else
        image.invertPixels(QImage::InvertRgb);
}

} // namespace api::rest
