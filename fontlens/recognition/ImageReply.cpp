#include "fontlens/recognition/ImageReply.h"

#include <QBuffer>
#include <QImageReader>

namespace FontRecognizer {

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
    // A format that cannot tell its size is decoded all the same: its own reader bounds it.
    const QSize size = reader.size();
    if (size.isValid() && qint64(size.width()) * size.height() > kMostPixels)
        return false;
    const QImage image = reader.read();
    if (image.isNull())
        return false;
    m_image = image;
    return true;
}

} // namespace FontRecognizer
