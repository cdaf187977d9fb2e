#include "fontlens/recognition/XmlAnswers.h"

namespace FontRecognizer {

namespace {

// QString's own replacing moves the rest of the text every thousand finds, which takes minutes for a text of nothing
// but wrappers.
QString replaced(const QString& text, const QString& before, const QString& after)
{
    QString result;
    result.reserve(text.size());
    int from = 0;
    for (int at = text.indexOf(before); at >= 0; at = text.indexOf(before, from)) {
        result.append(text.midRef(from, at - from)).append(after);
        from = at + before.size();
    }
    return result.append(text.midRef(from));
}

} // namespace

QString withoutCDataOf(const QStringList& tags, QString document)
{
    for (const QString& tag : tags) {
        document = replaced(document, QStringLiteral("<%1><![CDATA[").arg(tag), QStringLiteral("<%1>").arg(tag));
        document = replaced(document, QStringLiteral("]]></%1>").arg(tag), QStringLiteral("</%1>").arg(tag));
    }
    return document;
}

} // namespace FontRecognizer
