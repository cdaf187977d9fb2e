#include "qtService/management/RecentlyAddedFontsGroup.h"

#include "qtService/database/StaticFont.h"

#include <QPair>
#include <QVector>

#include <algorithm>

namespace {

// Ids by the date they were added, oldest first; fonts of one date keep their order.
QList<int> oldestFirst(const QList<StaticFontPtr>& fonts)
{
    QVector<QPair<qint64, int>> dated;
    dated.reserve(fonts.size());
    for (const StaticFontPtr& font : fonts)
        // The seconds as they are kept: a date and time costs a look at the time zone, 100,000 times.
        dated.append({font->stringField(fms::StaticFont::DateAdded).toLongLong(), font->id()});
    std::stable_sort(dated.begin(), dated.end(),
                     [](const auto& left, const auto& right) { return left.first < right.first; });
    QList<int> ids;
    ids.reserve(dated.size());
    for (const auto& entry : qAsConst(dated))
        ids.append(entry.second);
    return ids;
}

} // namespace

RecentlyAddedFontsGroup::RecentlyAddedFontsGroup(const QSharedPointer<FontCollectionInterface>& source, int maxCount)
    : FontGroup(source, tr("Recently Added"), Start::Empty)
    , m_maxCount(qMax(0, maxCount))
{
    m_sortedIds.assign(oldestFirst(source->fonts()));
    setMembers(newest());
}

void RecentlyAddedFontsGroup::onFontsAddedToSource(const QList<int>& fontIdList)
{
    m_sortedIds.insert(oldestFirst(recordsInSource(fontIdList)));
    replaceMembers(newest());
}

void RecentlyAddedFontsGroup::onFontsRemovedFromSource(const QList<int>& fontIdList)
{
    m_sortedIds.erase(fontIdList);
    replaceMembers(newest());
}

void RecentlyAddedFontsGroup::onSourceFontsChanged(const QList<int>& fontIdList)
{
    const QList<int> changed = membersAmong(fontIdList);
    if (!changed.isEmpty())
        emit fontsChanged(changed);
}

QList<int> RecentlyAddedFontsGroup::newest() const
{
    const QList<int>& sorted = m_sortedIds.ids();
    QList<int> ids;
    for (int i = sorted.size() - 1; i >= 0 && ids.size() < m_maxCount; --i)
        ids.append(sorted.at(i));
    return ids;
}
