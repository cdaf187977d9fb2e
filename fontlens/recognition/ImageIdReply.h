#pragma once

#include "fontlens/recognition/FontRecognizerReplyBase.h"

#include <QSharedPointer>
#include <QString>

namespace FontRecognizer {

// The id under which the service keeps a picture it has just made.
class ImageIdReply : public FontRecognizerReplyBase
{
    Q_OBJECT

public:
    static constexpr qint64 kLongestAnswer = 1024 * 1024;

    ImageIdReply();

    // Hexadecimal digits and underscores.
    QString imageId() const { return m_imageId; }

protected:
    // The id is what stands before the first ";".
    bool parse(const QByteArray& data) override;

private:
    QString m_imageId;
};

using ImageIdReplyPtr = QSharedPointer<ImageIdReply>;

} // namespace FontRecognizer
