#include "fontlens/recognizer/FontListXml.h"

namespace kerval::recognizer {

namespace {

// Names come from font files: what XML cannot hold is dropped.
QString xmlText(const QString& text)
{
    QString clean;
    clean.reserve(text.size());
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate()) {
            clean += c;
            clean += text.at(++i);
        } else if (!c.isSurrogate() && c.unicode() < 0xfffe && (c.unicode() >= 0x20 || c == QLatin1Char('\t'))) {
            clean += c;
        }
    }
    return clean;
}

void appendText(QByteArray& xml, const char* tag, const QString& text)
{
    const QString clean = xmlText(text);
    const QString escaped = clean.toHtmlEscaped();
    const bool isPlain = escaped == clean;
    xml += QByteArray("<") + tag + '>';
    if (isPlain)
        xml += "<![CDATA[";
    xml += escaped.toUtf8();
    if (isPlain)
        xml += "]]>";
    xml += QByteArray("</") + tag + ">";
}

} // namespace

QByteArray fontListXml(const QVector<ProposedFont>& fonts)
{
    QByteArray xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<fonts>\n";
    for (const ProposedFont& font : fonts) {
        xml += "<F>" + QByteArray::number(font.id) + "</F>";
        appendText(xml, "FN", font.family);
        appendText(xml, "FO", font.foundry);
        appendText(xml, "S", font.style);
        xml += "<D>" + QByteArray::number(font.deviance, 'g', 9) + "</D>\n";
    }
    return xml + "</fonts>\n";
}

} // namespace kerval::recognizer
