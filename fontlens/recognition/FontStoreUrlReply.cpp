#include "fontlens/recognition/FontStoreUrlReply.h"

#include "fontlens/recognition/XmlAnswers.h"

#include <QXmlStreamReader>

namespace FontRecognizer {

FontStoreUrlReply::FontStoreUrlReply(int fontId)
    : FontRecognizerReplyBase(kLongestAnswer)
    , m_fontId(fontId)
{
}

bool FontStoreUrlReply::parse(const QByteArray& data)
{
    const QString tag = QStringLiteral("buyurl");
    QXmlStreamReader reader(withoutCDataOf({tag}, QString::fromUtf8(data)));
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::StartElement && reader.name() == tag) {
            m_url = QUrl(reader.readElementText(), QUrl::TolerantMode);
            break;
        }
    }
    return !reader.hasError();
}

} // namespace FontRecognizer
