#include "fontlens/recognition/ImageIdReply.h"

#include <QRegularExpression>

namespace FontRecognizer {

bool ImageIdReply::parse(const QByteArray& data)
{
    static const QRegularExpression form(QRegularExpression::anchoredPattern(QStringLiteral("[0-9a-fA-F_]+")));
    const QString id = QString::fromUtf8(data).section(QLatin1Char(';'), 0, 0);
    if (!form.match(id).hasMatch())
        return false;
    m_imageId = id;
    return true;
}

} // namespace FontRecognizer
