#include "fontfile/TextWords.h"

#include <QTextBoundaryFinder>

#include <algorithm>

namespace {

bool isBlank(const QString& text, int from, int to)
{
    return std::all_of(text.cbegin() + from, text.cbegin() + to, [](QChar c) { return c.isSpace(); });
}

bool opensWord(QChar c)
{
    return c.category() == QChar::Punctuation_Open || c.category() == QChar::Punctuation_InitialQuote;
}

} // namespace

QVector<TextWord> wordsOf(const QString& paragraph)
{
    QVector<TextWord> words;
    int waiting = -1; // where punctuation started that goes with the next word
    QTextBoundaryFinder finder(QTextBoundaryFinder::Word, paragraph);
    int start = 0;
    for (int end = finder.toNextBoundary(); end > start; start = end, end = finder.toNextBoundary()) {
        const bool blank = isBlank(paragraph, start, end);
        if (blank || !paragraph.at(start).isPunct()) {
            if (waiting >= 0 || !blank) {
                const int from = waiting >= 0 ? waiting : start;
                words.append({from, (blank ? start : end) - from});
            }
            waiting = -1;
        } else if (waiting < 0) {
            const bool touchesWord = !words.isEmpty() && words.last().start + words.last().length == start;
            if (touchesWord && !opensWord(paragraph.at(start)))
                words.last().length += end - start;
            else
                waiting = start;
        }
    }
    if (waiting >= 0)
        words.append({waiting, paragraph.size() - waiting});
    if (!words.isEmpty() && words.last().start + words.last().length == paragraph.size() - 1)
        ++words.last().length;
    return words;
}
