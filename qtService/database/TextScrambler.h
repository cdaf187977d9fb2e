#pragma once

#include <QByteArray>
#include <QString>

// The tables of both scramblers. Empty alphabets change nothing: that is how the program uses them, so that any SQLite
// tool can read the catalogue and LIKE works on stored text.
struct ScramblerTables
{
    QByteArray delimiters;     // stay as they are and end words
    QByteArray keywords;       // words that stay, lower case, each between bars: "|select||from|"
    QByteArray statementPlain; // single bytes, as many as in the cipher alphabet
    QByteArray statementCipher;
    QByteArray valuePlain;
    QByteArray valueCipher;
};

// Rewrites the words of a statement that are no keywords, so that tables and columns bear other names in the file. A
// word of 255 bytes or more is none of ours and stays as it is.
class StatementScrambler
{
public:
    explicit StatementScrambler(const ScramblerTables& tables);

    QString encode(const QString& statement) const;
    QString decode(const QString& statement) const;

private:
    template <class Rewrite>
    QString rewriteWords(const QString& statement, Rewrite rewrite) const;

    const QByteArray m_delimiters;
    const QByteArray m_keywords;
    const QByteArray m_plain;
    const QByteArray m_cipher;
};

// Rewrites the bytes of a stored text; each replaced byte shifts the alphabet for the next.
class ValueScrambler
{
public:
    explicit ValueScrambler(const ScramblerTables& tables);

    bool changesNothing() const { return m_plain.isEmpty(); }
    QString encode(const QString& text) const;
    QString decode(const QString& text) const;

private:
    const QByteArray m_plain;
    const QByteArray m_cipher;
};
