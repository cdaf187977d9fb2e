#include "fontlens/recognition/FontListReply.h"

#include "fontlens/recognition/XmlAnswers.h"

#include <QXmlStreamReader>
#include <algorithm>
#include <cmath>

namespace FontRecognizer {

namespace {

// What is no number comes last, as sorting needs an order.
bool isNearer(const FontDataPtr& left, const FontDataPtr& right)
{
    if (std::isnan(left->deviance) || std::isnan(right->deviance))
        return !std::isnan(left->deviance) && std::isnan(right->deviance);
    return left->deviance < right->deviance;
}

} // namespace

FontListReply::FontListReply()
    : FontRecognizerReplyBase(kLongestAnswer)
{
}

bool FontListReply::parse(const QByteArray& data)
{
    static const QStringList wrapped{QStringLiteral("FN"), QStringLiteral("FO"), QStringLiteral("S"),
                                     QStringLiteral("FL"), QStringLiteral("PS"), QStringLiteral("VS"),
                                     QStringLiteral("VE"), QStringLiteral("VN")};
    QXmlStreamReader reader(withoutCDataOf(wrapped, QString::fromUtf8(data)));
    // A record is opened by its F, which holds the id alone; its other elements follow as siblings.
    QList<FontDataPtr> fonts;
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        const QString tag = reader.name().toString();
        if (tag == QLatin1String("F")) {
            fonts.append(FontDataPtr::create());
            fonts.last()->id = reader.readElementText().toInt();
        } else if (fonts.isEmpty()) {
            continue;
        } else if (tag == QLatin1String("FN")) {
            fonts.last()->name = reader.readElementText();
        } else if (tag == QLatin1String("FO")) {
            fonts.last()->foundry = reader.readElementText();
        } else if (tag == QLatin1String("S")) {
            fonts.last()->style = reader.readElementText();
        } else if (tag == QLatin1String("D")) {
            fonts.last()->deviance = reader.readElementText().toDouble();
        }
    }
    m_fonts.clear();
    if (reader.hasError())
        return false;
    std::stable_sort(fonts.begin(), fonts.end(), isNearer);
    m_fonts = fonts;
    return true;
}

} // namespace FontRecognizer
