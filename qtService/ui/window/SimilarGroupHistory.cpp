#include "qtService/ui/window/SimilarGroupHistory.h"

namespace {

// Every entry keeps its group alive.
constexpr int maximumEntries = 50;

} // namespace

void SimilarGroupHistory::push(const Entry& entry)
{
    m_entries.resize(m_current + 1);
    m_entries.append(entry);
    if (m_entries.size() > maximumEntries)
        m_entries.removeFirst();
    m_current = m_entries.size() - 1;
}

void SimilarGroupHistory::visit(const Entry& group)
{
    if (m_current >= 0 && m_entries.at(m_current).groupId != 0)
        m_entries[m_current] = group;
    else
        push(group);
}

void SimilarGroupHistory::leave(int fontId)
{
    if (m_current >= 0)
        m_entries[m_current].fontId = fontId;
}

const SimilarGroupHistory::Entry* SimilarGroupHistory::previous()
{
    return hasPrevious() ? &m_entries.at(--m_current) : nullptr;
}

const SimilarGroupHistory::Entry* SimilarGroupHistory::next()
{
    return hasNext() ? &m_entries.at(++m_current) : nullptr;
}
