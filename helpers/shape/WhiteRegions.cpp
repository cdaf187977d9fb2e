#include "helpers/shape/WhiteRegions.h"

#include <utility>

namespace krv {

namespace {

constexpr std::size_t kFewRegions = 256;

} // namespace

WhiteRegions::WhiteRegions(int columns)
    : m_columns(columns)
{
    m_parents.reserve(kFewRegions);
    m_sizes.reserve(kFewRegions);
}

void WhiteRegions::addRow(const InkBits& dark)
{
    // Straight strokes give the same row over and over.
    if (m_current->count > 0 && dark == m_last) {
        for (std::size_t i = 0; i < m_current->count; ++i) {
            const Stretch& stretch = m_current->stretches[i];
            m_sizes[static_cast<std::size_t>(root(stretch.region))] += stretch.end - stretch.begin;
        }
        return;
    }
    m_last = dark;
    std::swap(m_above, m_current);
    m_current->count = 0;
    m_next = 0;
    int begin = -1;
    for (int x = dark.nextSet(0); x < m_columns; x = dark.nextSet(begin)) {
        if (x > begin) {
            add(begin, x);
        }
        begin = dark.nextClear(x);
    }
    add(begin, m_columns + 1);
}

void WhiteRegions::add(int begin, int end)
{
    const Row& above = *m_above;
    while (m_next < above.count && above.stretches[m_next].end <= begin) {
        ++m_next;
    }
    int region = -1;
    for (std::size_t i = m_next; i < above.count && above.stretches[i].begin < end; ++i) {
        const int other = root(above.stretches[i].region);
        if (region >= 0 && other != region) {
            m_parents[static_cast<std::size_t>(other)] = region;
            m_sizes[static_cast<std::size_t>(region)] += m_sizes[static_cast<std::size_t>(other)];
        } else {
            region = other;
        }
    }
    if (region < 0) {
        region = static_cast<int>(m_parents.size());
        m_parents.push_back(region);
        m_sizes.push_back(0);
    }
    m_sizes[static_cast<std::size_t>(region)] += end - begin;
    m_current->add({begin, end, region});
}

std::vector<int> WhiteRegions::enclosed()
{
    std::vector<int> sizes;
    const int outside = m_parents.empty() ? -1 : root(0); // the first stretch is the upper margin
    for (int region = 0; region < static_cast<int>(m_parents.size()); ++region) {
        if (m_parents[static_cast<std::size_t>(region)] == region && region != outside) {
            sizes.push_back(m_sizes[static_cast<std::size_t>(region)]);
        }
    }
    return sizes;
}

int WhiteRegions::root(int region)
{
    while (m_parents[static_cast<std::size_t>(region)] != region) {
        int& parent = m_parents[static_cast<std::size_t>(region)];
        parent = m_parents[static_cast<std::size_t>(parent)];
        region = parent;
    }
    return region;
}

} // namespace krv
