#include "fontlens/recognizer/PictureDecoder.h"

#include <QBuffer>
#include <QImageReader>
#include <QMutex>

#include <cmath>

namespace kerval::recognizer {

namespace {

constexpr int maximumSide = 32767;
constexpr qint64 largePixels = 4 * 1000 * 1000;

struct Kind
{
    const char* reader; // the name of Qt's reader
    const char* contentType;
};

std::optional<Kind> kindOf(const QByteArray& bytes)
{
    if (bytes.startsWith("\x89PNG\r\n\x1a\n"))
        return Kind{"png", "image/png"};
    if (bytes.startsWith("\xff\xd8\xff"))
        return Kind{"jpeg", "image/jpeg"};
    if (bytes.startsWith("GIF87a") || bytes.startsWith("GIF89a"))
        return Kind{"gif", "image/gif"};
    if (bytes.startsWith("BM"))
        return Kind{"bmp", "image/bmp"};
    if (bytes.startsWith("RIFF") && bytes.mid(8, 4) == "WEBP")
        return Kind{"webp", "image/webp"};
    return std::nullopt;
}

qint64 pixelsOf(const QSize& size)
{
    return qint64(size.width()) * size.height();
}

int bytesPerPixel(QImage::Format format)
{
    const int bits = QImage::toPixelFormat(format).bitsPerPixel();
    return format == QImage::Format_Invalid ? 4 : qMax(1, (bits + 7) / 8);
}

QSize scaledSize(const QSize& size, qint64 pixels)
{
    const double factor = std::sqrt(double(pixels) / double(pixelsOf(size)));
    return QSize(qMax(1, int(size.width() * factor)), qMax(1, int(size.height() * factor)));
}

} // namespace

PictureDecoder::Result PictureDecoder::decode(const QByteArray& bytes)
{
    return decode(bytes, Limits());
}

PictureDecoder::Result PictureDecoder::decode(const QByteArray& bytes, const Limits& limits)
{
    Result result;
    const auto kind = kindOf(bytes);
    if (!kind)
        return result;
    QBuffer buffer;
    buffer.setData(bytes);
    if (!buffer.open(QIODevice::ReadOnly))
        return result;
    QImageReader reader(&buffer, QByteArray(kind->reader));
    reader.setAutoDetectImageFormat(false);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (size.isEmpty())
        return result;
    if (size.width() > maximumSide || size.height() > maximumSide ||
        pixelsOf(size) * bytesPerPixel(reader.imageFormat()) > limits.decodedBytes) {
        result.problem = TooLarge;
        return result;
    }

    static QMutex largeOnes;
    QMutexLocker lock(pixelsOf(size) > largePixels ? &largeOnes : nullptr);
    const bool isTooFine = pixelsOf(size) > limits.keptPixels;
    const bool isTurned = reader.transformation() != QImageIOHandler::TransformationNone;
    if (isTooFine)
        reader.setScaledSize(scaledSize(size, limits.keptPixels));
    QImage image = reader.read();
    if (image.isNull())
        return result;
    // Two bytes for a colour tell nothing about a letter that one does not.
    if (bytesPerPixel(image.format()) > 4)
        image = image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    if (isTooFine || isTurned) {
        result.picture = fromImage(image);
    } else {
        result.picture.image = image;
        result.picture.bytes = bytes;
        result.picture.contentType = QByteArray(kind->contentType);
    }
    result.problem = NoProblem;
    return result;
}

StoredPicture PictureDecoder::fromImage(const QImage& image)
{
    StoredPicture picture;
    picture.image = image;
    picture.contentType = QByteArrayLiteral("image/png");
    QBuffer buffer(&picture.bytes);
    // Little effort: the bytes go no further than this machine.
    if (!buffer.open(QIODevice::WriteOnly) || !image.save(&buffer, "PNG", 80))
        picture.bytes.clear();
    return picture;
}

} // namespace kerval::recognizer
