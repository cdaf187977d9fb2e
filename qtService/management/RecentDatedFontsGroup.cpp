#include "qtService/management/RecentDatedFontsGroup.h"

#include "qtService/database/StaticFont.h"

#include <QDateTime>
#include <QPair>
#include <QSet>
#include <QVector>

#include <algorithm>

RecentDatedFontsGroup::RecentDatedFontsGroup(const QSharedPointer<FontCollectionInterface>& source, const QString& name,
                                             DateOf dateOf, int maxCount)
    : FontGroup(source, name, Start::Empty)
    , m_dateOf(dateOf)
    , m_maxCount(qMax(0, maxCount))
{
    readDates({}, source->fonts());
    setMembers(newest());
}

void RecentDatedFontsGroup::onFontsAddedToSource(const QList<int>& fontIdList)
{
    update(fontIdList, recordsInSource(fontIdList));
}

void RecentDatedFontsGroup::onFontsRemovedFromSource(const QList<int>& fontIdList)
{
    update(fontIdList, {});
}

void RecentDatedFontsGroup::onSourceFontsChanged(const QList<int>& fontIdList)
{
    update(fontIdList, recordsInSource(fontIdList));
}

bool RecentDatedFontsGroup::readDates(const QList<int>& fontIds, const QList<StaticFontPtr>& fonts)
{
    bool changed = false;
    QSet<int> gone(fontIds.cbegin(), fontIds.cend());
    for (const StaticFontPtr& font : fonts) {
        const QDateTime date = (font.data()->*m_dateOf)();
        // The start of the epoch stands for "never".
        if (!date.isValid() || date.toMSecsSinceEpoch() == 0)
            continue;
        const int id = font->id();
        gone.remove(id);
        const auto known = m_dates.constFind(id);
        if (known != m_dates.constEnd() && *known == date.toMSecsSinceEpoch())
            continue;
        m_dates.insert(id, date.toMSecsSinceEpoch());
        changed = true;
    }
    for (int id : qAsConst(gone))
        changed = m_dates.remove(id) > 0 || changed;
    return changed;
}

QList<int> RecentDatedFontsGroup::newest() const
{
    // Sorted by date, then by id, so that fonts activated together keep one order.
    QVector<QPair<qint64, int>> candidates;
    candidates.reserve(m_dates.size());
    for (auto it = m_dates.constBegin(); it != m_dates.constEnd(); ++it)
        candidates.append({-it.value(), it.key()});
    const int count = qMin(m_maxCount, candidates.size());
    std::partial_sort(candidates.begin(), candidates.begin() + count, candidates.end());
    QList<int> ids;
    ids.reserve(count);
    for (int i = 0; i < count; ++i)
        ids.append(candidates.at(i).second);
    return ids;
}

void RecentDatedFontsGroup::update(const QList<int>& fontIds, const QList<StaticFontPtr>& fonts)
{
    const FontMembers before = members();
    if (readDates(fontIds, fonts))
        setMembers(newest());
    const FontMembers now = members();

    QList<int> removed;
    QList<int> added;
    QList<int> changed;
    for (int id : before.ids()) {
        if (!now.contains(id))
            removed.append(id);
    }
    for (int id : now.ids()) {
        if (!before.contains(id))
            added.append(id);
    }
    for (int id : fontIds) {
        if (before.contains(id) && now.contains(id))
            changed.append(id);
    }
    if (!removed.isEmpty())
        emit fontsRemoved(removed);
    if (!added.isEmpty())
        emit fontsAdded(added);
    if (!changed.isEmpty())
        emit fontsChanged(changed);
}
