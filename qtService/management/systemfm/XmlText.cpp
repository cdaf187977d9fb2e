#include "qtService/management/systemfm/XmlText.h"

namespace kerval::systemfm {

QString escapedXml(const QString& text)
{
    QString result;
    for (const QChar c : text) {
        switch (c.unicode()) {
        case '&':
            result += QLatin1String("&amp;");
            break;
        case '<':
            result += QLatin1String("&lt;");
            break;
        case '>':
            result += QLatin1String("&gt;");
            break;
        case '"':
            result += QLatin1String("&quot;");
            break;
        case '\n':
        case '\r':
        case '\t':
            result += QStringLiteral("&#%1;").arg(c.unicode());
            break;
        default:
            result += c;
        }
    }
    return result;
}

} // namespace kerval::systemfm
