#pragma once

#include <QByteArray>
#include <QString>

namespace fms {

// A text made ready for searching without regard to case: simple case folding of each character, as UTF-8. One such
// text contains another exactly when QString finds the one in the other case-insensitively.
QByteArray foldedText(const QString& text);

// A word to look for in many folded texts.
class FoldedWord
{
public:
    explicit FoldedWord(const QString& word);

    bool isIn(const QByteArray& foldedText) const;
    bool isStartOf(const QByteArray& foldedText) const { return foldedText.startsWith(m_word); }
    bool isEndOf(const QByteArray& foldedText) const { return foldedText.endsWith(m_word); }

private:
    QByteArray m_word;
    int m_rarest = 0;
};

} // namespace fms
