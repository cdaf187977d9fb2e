#include "qtService/ui/fonts/FontSortKeys.h"

#include "qtService/ui/fonts/FontColumn.h"
#include "qtService/ui/fonts/FontColumnValues.h"

#include <QDateTime>
#include <QLocale>

namespace {

// Licences run to kilobytes; nobody sees an order beyond the first words.
constexpr int maximumKeyLength = 80;
// A small group between two large ones does not cost the large one its keys.
constexpr int keysKept = 100000;

} // namespace

// Without a language the system's order is that of the codes, which is no order for readers.
FontSortKeys::FontSortKeys()
    : m_collator(QLocale().language() == QLocale::C ? QLocale(QLocale::English) : QLocale())
{
    m_collator.setCaseSensitivity(Qt::CaseInsensitive);
    m_collator.setNumericMode(true);
}

FontSortKeys::Kind FontSortKeys::kindOf(int column)
{
    switch (column) {
    case fonts::NumberColumn:
        return Kind::Position;
    case fonts::ActivityImageColumn:
    case fonts::DateAddedColumn:
    case fonts::IdColumn:
    case fonts::BoldColumn:
    case fonts::ItalicColumn:
    case fonts::ItalicAngleColumn:
    case fonts::HiddenColumn:
        return Kind::Number;
    default:
        return Kind::Text;
    }
}

qint64 FontSortKeys::numberOf(const StaticFontPtr& font) const
{
    switch (m_column) {
    case fonts::ActivityImageColumn:
        return font->activityType();
    case fonts::DateAddedColumn:
        return font->dateAdded().toMSecsSinceEpoch();
    default:
        return fonts::columnValue(font, m_column).toLongLong();
    }
}

QString FontSortKeys::textOf(const StaticFontPtr& font) const
{
    const int column = m_column == fonts::PreviewColumn ? int(fonts::FamilyNameColumn) : m_column;
    return fonts::columnValue(font, column).toString().left(maximumKeyLength);
}

QCollatorSortKey FontSortKeys::keyOf(const QString& text)
{
    const auto found = m_keys.constFind(text);
    return found != m_keys.cend() ? *found : *m_keys.insert(text, m_collator.sortKey(text));
}

void FontSortKeys::build(int column, const QVector<StaticFontPtr>& fonts)
{
    clear();
    m_column = column;
    m_kind = kindOf(column);
    if (m_kind == Kind::Number) {
        m_numbers.reserve(size_t(fonts.size()));
        for (const StaticFontPtr& font : fonts)
            m_numbers.push_back(numberOf(font));
    } else if (m_kind == Kind::Text) {
        // Texts of lists long gone must not pile up.
        if (m_keysColumn != column || m_keys.size() > 2 * fonts.size() + keysKept)
            m_keys.clear();
        m_keysColumn = column;
        m_texts.reserve(size_t(fonts.size()));
        for (const StaticFontPtr& font : fonts)
            m_texts.push_back(keyOf(textOf(font)));
    }
}

void FontSortKeys::clear()
{
    m_column = -1;
    m_numbers.clear();
    m_texts.clear();
}

void FontSortKeys::update(int row, const StaticFontPtr& font)
{
    if (m_column < 0)
        return;
    if (m_kind == Kind::Number)
        m_numbers[size_t(row)] = numberOf(font);
    else if (m_kind == Kind::Text)
        m_texts[size_t(row)] = keyOf(textOf(font));
}

bool FontSortKeys::less(int left, int right) const
{
    switch (m_kind) {
    case Kind::Number:
        return m_numbers[size_t(left)] < m_numbers[size_t(right)];
    case Kind::Text:
        return m_texts[size_t(left)].compare(m_texts[size_t(right)]) < 0;
    default:
        return left < right;
    }
}
