#pragma once

#include "qtService/database/StaticFont.h"

#include <QCollator>
#include <QHash>
#include <QVector>

#include <vector>

// Sort keys of one column for the rows of the fonts view model. A comparison of two rows touches two ready keys and no
// record, so that 50,000 rows sort in a blink. Making a text's key costs more than all its comparisons, so each text is
// made into a key once: equal texts share it, and it stays for the next list sorted by the same column.
class FontSortKeys
{
public:
    FontSortKeys();

    int column() const { return m_column; }
    void build(int column, const QVector<StaticFontPtr>& fonts);
    void clear();
    // One row's record changed.
    void update(int row, const StaticFontPtr& font);
    bool less(int left, int right) const;

private:
    enum class Kind
    {
        Position,
        Number,
        Text
    };

    static Kind kindOf(int column);
    qint64 numberOf(const StaticFontPtr& font) const;
    QString textOf(const StaticFontPtr& font) const;
    QCollatorSortKey keyOf(const QString& text);

    QCollator m_collator;
    QHash<QString, QCollatorSortKey> m_keys; // of the column built last
    int m_keysColumn = -1;
    int m_column = -1;
    Kind m_kind = Kind::Position;
    std::vector<qint64> m_numbers;
    std::vector<QCollatorSortKey> m_texts;
};
