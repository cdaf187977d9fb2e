#pragma once

#include "fontlens/recognition/FontRecognizerReplyBase.h"

#include <QSharedPointer>
#include <QUrl>

namespace FontRecognizer {

// Where a font can be bought; an answer without an address is a success with an empty one.
class FontStoreUrlReply : public FontRecognizerReplyBase
{
    Q_OBJECT

public:
    static constexpr qint64 kLongestAnswer = 1024 * 1024;

    explicit FontStoreUrlReply(int fontId);

    int fontId() const { return m_fontId; }
    QUrl url() const { return m_url; }

protected:
    bool parse(const QByteArray& data) override;

private:
    int m_fontId;
    QUrl m_url;
};

using FontStoreUrlReplyPtr = QSharedPointer<FontStoreUrlReply>;

} // namespace FontRecognizer
