#include "fontlens/recognition/ImageReply.h"

#include <QBuffer>
#include <QImageReader>
#include <QSet>

namespace FontRecognizer {

namespace {

bool hasHonestHeader(const QByteArray& format)
{
    static const QSet<QByteArray> others{"svg", "svgz", "pdf", "mng", "ico", "cur", "icns"};
    return !format.isEmpty() && !others.contains(format);
}

} // namespace

ImageReply::ImageReply()
    : FontRecognizerReplyBase(kLongestAnswer)
{
}

void ImageReply::setImageId(const QString& imageId)
{
    m_imageId = imageId;
}

bool ImageReply::parse(const QByteArray& data)
{
    QBuffer buffer;
    buffer.setData(data);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    if (!hasHonestHeader(reader.format()))
        return false;
    const QSize size = reader.size();
    if (size.isEmpty() || qint64(size.width()) * size.height() > kMostPixels)
        return false;
    const QImage image = reader.read();
    if (image.isNull())
        return false;
    m_image = image;
    return true;
}

} // namespace FontRecognizer
