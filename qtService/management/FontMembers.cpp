#include "qtService/management/FontMembers.h"

#include <QPair>
#include <QSet>
#include <QVector>

#include <algorithm>

void FontMembers::assign(const QList<int>& fontIds)
{
    clear();
    m_ranks.reserve(fontIds.size());
    insert(fontIds);
}

void FontMembers::clear()
{
    m_ids.clear();
    m_ranks.clear();
    m_nextRank = 0;
}

QList<int> FontMembers::insert(const QList<int>& fontIds)
{
    QList<int> inserted;
    for (int id : fontIds) {
        if (m_ranks.contains(id))
            continue;
        m_ranks.insert(id, m_nextRank++);
        inserted.append(id);
    }
    m_ids.append(inserted);
    return inserted;
}

QList<int> FontMembers::erase(const QList<int>& fontIds)
{
    QList<int> erased;
    QSet<int> gone;
    for (int id : fontIds) {
        if (m_ranks.remove(id) == 0)
            continue;
        erased.append(id);
        gone.insert(id);
    }
    if (!erased.isEmpty()) {
        m_ids.erase(std::remove_if(m_ids.begin(), m_ids.end(), [&gone](int id) { return gone.contains(id); }),
                    m_ids.end());
    }
    return erased;
}

QList<int> FontMembers::inOrder(const QList<int>& fontIds) const
{
    QVector<QPair<int, int>> ranked; // rank, id
    ranked.reserve(fontIds.size());
    for (int id : fontIds) {
        const auto it = m_ranks.constFind(id);
        if (it != m_ranks.constEnd())
            ranked.append({*it, id});
    }
    // Mostly they come in order already.
    if (!std::is_sorted(ranked.cbegin(), ranked.cend()))
        std::sort(ranked.begin(), ranked.end());
    QList<int> ordered;
    ordered.reserve(ranked.size());
    for (const auto& entry : qAsConst(ranked)) {
        if (ordered.isEmpty() || ordered.last() != entry.second)
            ordered.append(entry.second);
    }
    return ordered;
}
