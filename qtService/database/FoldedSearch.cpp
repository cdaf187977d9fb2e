#include "qtService/database/FoldedSearch.h"

#include <cstring>

namespace fms {

QByteArray foldedText(const QString& text)
{
    // QString::toCaseFolded() may change the length of a text ("ß" becomes "ss"); searching in QString does not.
    QString folded(text.size(), Qt::Uninitialized);
    QChar* out = folded.data();
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate()) {
            const uint character = QChar::toCaseFolded(QChar::surrogateToUcs4(c, text.at(i + 1)));
            *out++ = QChar(QChar::highSurrogate(character));
            *out++ = QChar(QChar::lowSurrogate(character));
            ++i;
        } else {
            *out++ = c.toCaseFolded();
        }
    }
    return folded.toUtf8();
}

namespace {

// How common a byte is in running text; bytes outside ASCII lead or continue characters of one script and come often
// where they come at all.
int commonness(char byte)
{
    static const char order[] = "zqxj9876543210kvbywgpfmucdlhrsnioat e";
    if (uchar(byte) >= 0x80)
        return int(sizeof order);
    const char* found = byte ? std::strchr(order, byte) : nullptr;
    return found ? int(found - order) + 1 : 0;
}

} // namespace

FoldedWord::FoldedWord(const QString& word)
    : m_word(foldedText(word))
{
    for (int i = 1; i < m_word.size(); ++i) {
        if (commonness(m_word.at(i)) < commonness(m_word.at(m_rarest)))
            m_rarest = i;
    }
}

bool FoldedWord::isIn(const QByteArray& text) const
{
    // memchr() looks at many bytes at once, so jumping along the word's rarest byte passes most of a text unread.
    const int length = m_word.size();
    if (length == 0)
        return true;
    if (length > text.size())
        return false;
    const char* const word = m_word.constData();
    const char* at = text.constData() + m_rarest;
    const char* const end = text.constData() + text.size() - length + m_rarest + 1;
    while (at < end) {
        at = static_cast<const char*>(std::memchr(at, word[m_rarest], size_t(end - at)));
        if (!at)
            return false;
        if (std::memcmp(at - m_rarest, word, size_t(length)) == 0)
            return true;
        ++at;
    }
    return false;
}

} // namespace fms
