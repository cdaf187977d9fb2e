#include "qtService/database/TextScrambler.h"

#include <QtGlobal>

namespace {

constexpr int LongestWord = 254;

// Alphabets of different lengths could not be reversed.
QByteArray usable(const QByteArray& alphabet, const QByteArray& counterpart)
{
    Q_ASSERT(alphabet.size() == counterpart.size());
    return alphabet.size() == counterpart.size() ? alphabet : QByteArray();
}

} // namespace

StatementScrambler::StatementScrambler(const ScramblerTables& tables)
    : m_delimiters(tables.delimiters)
    , m_keywords(tables.keywords)
    , m_plain(usable(tables.statementPlain, tables.statementCipher))
    , m_cipher(usable(tables.statementCipher, tables.statementPlain))
{
}

template <class Rewrite>
QString StatementScrambler::rewriteWords(const QString& statement, Rewrite rewrite) const
{
    if (m_plain.isEmpty())
        return statement;
    QByteArray bytes = statement.toUtf8();
    int start = 0;
    while (start < bytes.size()) {
        int end = start;
        while (end < bytes.size() && !m_delimiters.contains(bytes.at(end)))
            ++end;
        const QByteArray word = bytes.mid(start, end - start);
        if (!word.isEmpty() && word.size() <= LongestWord && !m_keywords.contains('|' + word.toLower() + '|')) {
            for (int k = 0; k < word.size(); ++k)
                bytes[start + k] = rewrite(word.at(k), k);
        }
        start = end + 1;
    }
    return QString::fromUtf8(bytes);
}

QString StatementScrambler::encode(const QString& statement) const
{
    const int n = m_plain.size();
    return rewriteWords(statement, [&](char c, int k) {
        const int i = m_plain.indexOf(c);
        return i < 0 ? c : m_cipher.at((k + i) % n);
    });
}

QString StatementScrambler::decode(const QString& statement) const
{
    const int n = m_plain.size();
    return rewriteWords(statement, [&](char c, int k) {
        const int j = m_cipher.indexOf(c);
        return j < 0 ? c : m_plain.at((n - k % n + j) % n);
    });
}

ValueScrambler::ValueScrambler(const ScramblerTables& tables)
    : m_plain(usable(tables.valuePlain, tables.valueCipher))
    , m_cipher(usable(tables.valueCipher, tables.valuePlain))
{
}

QString ValueScrambler::encode(const QString& text) const
{
    if (changesNothing() || text.isEmpty())
        return text;
    const int n = m_plain.size();
    QByteArray bytes = text.toUtf8();
    int shift = bytes.size() % n;
    for (char& byte : bytes) {
        const int i = m_plain.indexOf(byte);
        if (i >= 0)
            byte = m_cipher.at((shift++ + i) % n);
    }
    return QString::fromUtf8(bytes);
}

QString ValueScrambler::decode(const QString& text) const
{
    if (changesNothing() || text.isEmpty())
        return text;
    const int n = m_plain.size();
    QByteArray bytes = text.toUtf8();
    int shift = bytes.size() % n;
    for (char& byte : bytes) {
        const int j = m_cipher.indexOf(byte);
        if (j >= 0)
            byte = m_plain.at((n - shift++ % n + j) % n);
    }
    return QString::fromUtf8(bytes);
}
