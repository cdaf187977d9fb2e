#include "helpers/shape/WhiteRegions.h"

#include <utility>

namespace krv {

WhiteRegions::WhiteRegions(int columns)
    : m_columns(columns)
{
    m_parents[kOutside] = kOutside;
    m_sizes[kOutside] = 0;
    clear(*m_current);
}

void WhiteRegions::clear(Row& row) const
{
    row.count = 0;
    row.firstInk = m_columns;
    row.behindInk = 0;
}

void WhiteRegions::addRow(const InkBits& dark)
{
    // Straight strokes give the same row over and over.
    if (dark == m_last) {
        for (std::size_t i = 0; i < m_current->count; ++i) {
            const Stretch& stretch = m_current->stretches[i];
            Region& size = m_sizes[root(stretch.region)];
            size = static_cast<Region>(size + stretch.end - stretch.begin);
        }
        return;
    }
    m_last = dark;
    std::swap(m_above, m_current);
    clear(*m_current);
    m_next = 0;
    int x = dark.nextSet(0);
    if (x < m_columns) {
        m_current->firstInk = x;
        for (;;) {
            const int begin = dark.nextClear(x);
            x = dark.nextSet(begin);
            if (x >= m_columns) {
                m_current->behindInk = begin;
                break;
            }
            add(begin, x);
        }
    }
    openAboveWhere(*m_current);
}

void WhiteRegions::add(int begin, int end)
{
    const Row& above = *m_above;
    while (m_next < above.count && above.stretches[m_next].end <= begin) {
        ++m_next;
    }
    Stretch stretch{begin, end, kOutside};
    std::size_t touched = m_next;
    if (!above.isOpenAt(stretch)) {
        if (touched < above.count && above.stretches[touched].begin < end) {
            stretch.region = root(above.stretches[touched++].region);
        } else {
            stretch.region = static_cast<Region>(m_regions++);
            m_parents[stretch.region] = stretch.region;
            m_sizes[stretch.region] = 0;
        }
    }
    for (; touched < above.count && above.stretches[touched].begin < end; ++touched) {
        stretch.region = joined(stretch.region, root(above.stretches[touched].region));
    }
    m_sizes[stretch.region] = static_cast<Region>(m_sizes[stretch.region] + end - begin);
    m_current->stretches[m_current->count++] = stretch;
}

// What the row above has between its ink is not enclosed where this one has none around it.
void WhiteRegions::openAboveWhere(const Row& row)
{
    for (std::size_t i = 0; i < m_above->count; ++i) {
        if (row.isOpenAt(m_above->stretches[i])) {
            joined(kOutside, root(m_above->stretches[i].region));
        }
    }
}

WhiteRegions::Region WhiteRegions::joined(Region one, Region other)
{
    if (one == other) {
        return one;
    }
    const Region kept = other == kOutside ? other : one;
    const Region given = other == kOutside ? one : other;
    m_parents[given] = kept;
    m_sizes[kept] = static_cast<Region>(m_sizes[kept] + m_sizes[given]);
    return kept;
}

std::vector<int> WhiteRegions::enclosed()
{
    addRow({}); // the lower margin
    std::vector<int> sizes;
    for (std::size_t region = kOutside + 1; region < m_regions; ++region) {
        if (m_parents[region] == region) {
            sizes.push_back(m_sizes[region]);
        }
    }
    return sizes;
}

WhiteRegions::Region WhiteRegions::root(Region region)
{
    while (m_parents[region] != region) {
        m_parents[region] = m_parents[m_parents[region]];
        region = m_parents[region];
    }
    return region;
}

} // namespace krv
