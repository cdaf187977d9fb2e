#pragma once

#include <QHash>
#include <QList>

// The ordered ids of a collection with a hash beside them: membership is a hash test, and the matches of a query can be
// put into the collection's order without walking it. A value; copies share their data until one of them changes.
class FontMembers
{
public:
    const QList<int>& ids() const { return m_ids; }
    int count() const { return m_ids.size(); }
    bool contains(int fontId) const { return m_ranks.contains(fontId); }

    void assign(const QList<int>& fontIds);
    void clear();
    // The ids that were not members yet, in the given order; they are appended in it.
    QList<int> insert(const QList<int>& fontIds);
    // The ids that were members, in the given order.
    QList<int> erase(const QList<int>& fontIds);
    // The members among the ids, in the order of this collection.
    QList<int> inOrder(const QList<int>& fontIds) const;

private:
    QList<int> m_ids;
    QHash<int, int> m_ranks; // ascending along m_ids; a place keeps its rank when others leave
    int m_nextRank = 0;
};
