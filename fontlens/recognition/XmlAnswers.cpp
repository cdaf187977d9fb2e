#include "fontlens/recognition/XmlAnswers.h"

namespace FontRecognizer {

QString withoutCDataOf(const QStringList& tags, QString document)
{
    for (const QString& tag : tags) {
        document.replace(QStringLiteral("<%1><![CDATA[").arg(tag), QStringLiteral("<%1>").arg(tag));
        document.replace(QStringLiteral("]]></%1>").arg(tag), QStringLiteral("</%1>").arg(tag));
    }
    return document;
}

} // namespace FontRecognizer
