#pragma once

#include "fontlens/recognition/FontRecognizerReplyBase.h"

#include <QImage>
#include <QSharedPointer>
#include <QString>

namespace FontRecognizer {

// A picture of the service. Its id is the one the service gave it, or for a preview the font's id in decimal.
//
// A small answer cannot claim gigabytes: a picture is decoded only when its header promises at most 64 million pixels.
// Formats whose header promises nothing are refused. These are drawings, which may be compressed and are programs of
// their own, and wrappers, which hold pictures of another format and another size.
class ImageReply : public FontRecognizerReplyBase
{
    Q_OBJECT

public:
    static constexpr qint64 kLongestAnswer = 64 * 1024 * 1024;
    static constexpr qint64 kMostPixels = 64 * 1000 * 1000;

    ImageReply();

    QString imageId() const { return m_imageId; }
    void setImageId(const QString& imageId);
    // Null until success.
    QImage image() const { return m_image; }

protected:
    // Any of Qt's formats of pixels, told by the bytes.
    bool parse(const QByteArray& data) override;

private:
    QString m_imageId;
    QImage m_image;
};

using ImageReplyPtr = QSharedPointer<ImageReply>;

} // namespace FontRecognizer
