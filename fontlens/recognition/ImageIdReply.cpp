#include "fontlens/recognition/ImageIdReply.h"

#include <QRegularExpression>

namespace FontRecognizer {

ImageIdReply::ImageIdReply()
    : FontRecognizerReplyBase(kLongestAnswer)
{
}

bool ImageIdReply::parse(const QByteArray& data)
{
    static const QRegularExpression form(QRegularExpression::anchoredPattern(QStringLiteral("[0-9a-fA-F_]+")));
    const int end = data.indexOf(';');
    const QString id = QString::fromUtf8(end < 0 ? data : data.left(end));
    if (!form.match(id).hasMatch())
        return false;
    m_imageId = id;
    return true;
}

} // namespace FontRecognizer
