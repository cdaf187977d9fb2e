#include "qtService/database/FontOrder.h"

#include "qtService/database/FontField.h"

#include <algorithm>
#include <vector>

using fms::FontField;
using fms::StaticFontData;

namespace {

template <class Key, class Read>
void sortBy(QList<StaticFontPtr>& fonts, Qt::SortOrder order, Read read)
{
    std::vector<std::pair<Key, StaticFontPtr>> keyed;
    keyed.reserve(size_t(fonts.size()));
    for (const StaticFontPtr& font : qAsConst(fonts))
        keyed.emplace_back(fms::StaticFontAccess::read(*font, read), font);
    if (order == Qt::AscendingOrder)
        std::stable_sort(keyed.begin(), keyed.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    else
        std::stable_sort(keyed.begin(), keyed.end(), [](const auto& a, const auto& b) { return b.first < a.first; });
    fonts.clear();
    fonts.reserve(int(keyed.size()));
    for (auto& entry : keyed)
        fonts.append(std::move(entry.second));
}

} // namespace

FontOrder::FontOrder(const QString& propertyName, Qt::SortOrder order)
    : m_propertyName(propertyName)
    , m_order(order)
{
}

bool FontOrder::isValid() const
{
    const FontField* const field = FontField::find(m_propertyName);
    return field && field->kind != FontField::Subsets;
}

void FontOrder::sort(QList<StaticFontPtr>& fonts) const
{
    if (!isValid())
        return;
    if (m_propertyName == QLatin1String("fontHash")) {
        for (const StaticFontPtr& font : qAsConst(fonts))
            font->fontHash(); // computes and keeps it
    }
    const FontField& field = *FontField::find(m_propertyName);
    if (field.isNumber())
        sortBy<int>(fonts, m_order, [&field](const StaticFontData& data) { return field.number(data); });
    else if (field.kind == FontField::Time)
        sortBy<qint64>(fonts, m_order, [&field](const StaticFontData& data) { return field.seconds(data); });
    else
        sortBy<QString>(fonts, m_order, [&field](const StaticFontData& data) { return field.text(data); });
}
