#include "fontlens/PictureSource.h"

#include <QFileInfo>
#include <QImageReader>
#include <QMimeData>

#include <cmath>

namespace {

constexpr qint64 megapixel = 1000 * 1000;
constexpr qint64 mostPixels = 8 * megapixel;
constexpr qint64 mostPixelsRead = 250 * megapixel;

qint64 pixels(QSize size)
{
    return qint64(size.width()) * size.height();
}

QSize reducedSize(QSize size)
{
    if (pixels(size) <= mostPixels)
        return size;
    const double factor = std::sqrt(double(mostPixels) / double(pixels(size)));
    return QSize(qMax(1, int(size.width() * factor)), qMax(1, int(size.height() * factor)));
}

PictureSource fromUrl(const QUrl& url)
{
    PictureSource source;
    if (url.isLocalFile())
        source.file = url.toLocalFile();
    else if (url.isValid() && !url.host().isEmpty() &&
             (url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https")))
        source.url = url;
    return source;
}

} // namespace

PictureSource PictureSource::fromText(const QString& text)
{
    const QString trimmed = text.trimmed();
    if (QFileInfo(trimmed).isAbsolute())
        return QFileInfo::exists(trimmed) ? fromUrl(QUrl::fromLocalFile(trimmed)) : PictureSource();
    return fromUrl(QUrl::fromUserInput(trimmed));
}

PictureSource PictureSource::fromMimeData(const QMimeData* data)
{
    if (!data)
        return PictureSource();
    // A browser gives the picture and the address of the page it links to; the picture is what is meant.
    if (data->hasImage()) {
        PictureSource source;
        source.image = qvariant_cast<QImage>(data->imageData());
        if (!source.isEmpty())
            return source;
    }
    const QList<QUrl> urls = data->urls();
    for (const QUrl& url : urls) {
        const PictureSource source = fromUrl(url);
        if (!source.isEmpty())
            return source;
    }
    // One word with a scheme, or a path: other text that is copied about is no picture's address.
    const QString text = data->text().trimmed();
    return text.contains(QLatin1String("://")) || QFileInfo(text).isAbsolute() ? fromText(text) : PictureSource();
}

QImage PictureSource::load(const QString& file)
{
    QImageReader reader(file);
    reader.setAutoTransform(true);
    reader.setDecideFormatFromContent(true);
    const QSize size = reader.size();
    if (pixels(size) > mostPixelsRead)
        return QImage();
    if (size.isValid() && reducedSize(size) != size)
        reader.setScaledSize(reducedSize(size));
    return reduced(reader.read());
}

QImage PictureSource::reduced(const QImage& image)
{
    const QSize size = reducedSize(image.size());
    return size == image.size() ? image : image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}
