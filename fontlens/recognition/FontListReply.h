#pragma once

#include "fontlens/recognition/FontData.h"
#include "fontlens/recognition/FontRecognizerReplyBase.h"

namespace FontRecognizer {

// The fonts that come nearest to the selected letters, smallest deviance first.
class FontListReply : public FontRecognizerReplyBase
{
    Q_OBJECT

public:
    static constexpr qint64 kLongestAnswer = 16 * 1024 * 1024;

    FontListReply();

    QList<FontDataPtr> fonts() const { return m_fonts; }

protected:
    bool parse(const QByteArray& data) override;

private:
    QList<FontDataPtr> m_fonts;
};

using FontListReplyPtr = QSharedPointer<FontListReply>;

} // namespace FontRecognizer
