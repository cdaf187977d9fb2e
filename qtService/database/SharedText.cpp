#include "qtService/database/SharedText.h"

#include "qtService/database/FoldedSearch.h"

#include <QHash>
#include <QMutex>

#include <array>
#include <atomic>

namespace fms {

struct SharedText::Entry
{
    std::atomic<int> holders{1};
    uint hash = 0;
    QString text;
    std::atomic<const QByteArray*> folded{nullptr};

    ~Entry() { delete folded.load(); }
};

namespace {

// Split by hash, so that threads that fill records seldom meet at one mutex.
struct Shard
{
    QMutex mutex;
    QHash<QString, SharedText::Entry*> entries;
};

constexpr uint ShardCount = 16;

Shard& shardFor(uint hash)
{
    // Never destroyed: records in static objects may outlive anything.
    static auto* const shards = new std::array<Shard, ShardCount>;
    return (*shards)[(hash >> 4) % ShardCount];
}

} // namespace

SharedText::SharedText(const QString& text)
{
    if (text.isEmpty())
        return;
    const uint hash = qHash(text);
    Shard& shard = shardFor(hash);
    QMutexLocker locker(&shard.mutex);
    if (Entry* known = shard.entries.value(text)) {
        known->holders.fetch_add(1, std::memory_order_relaxed);
        m_entry = known;
        return;
    }
    m_entry = new Entry;
    m_entry->hash = hash;
    m_entry->text = text;
    m_entry->text.squeeze();
    shard.entries.insert(m_entry->text, m_entry);
}

SharedText::SharedText(const SharedText& other)
    : m_entry(other.m_entry)
{
    if (m_entry)
        m_entry->holders.fetch_add(1, std::memory_order_relaxed);
}

SharedText::~SharedText()
{
    if (!m_entry)
        return;
    // The last holder leaves under the shard's mutex only, or another thread could find an entry about to be deleted.
    int holders = m_entry->holders.load(std::memory_order_relaxed);
    while (holders > 1) {
        if (m_entry->holders.compare_exchange_weak(holders, holders - 1, std::memory_order_acq_rel))
            return;
    }
    Shard& shard = shardFor(m_entry->hash);
    QMutexLocker locker(&shard.mutex);
    if (m_entry->holders.fetch_sub(1, std::memory_order_acq_rel) > 1)
        return;
    shard.entries.remove(m_entry->text);
    locker.unlock();
    delete m_entry;
}

const QString& SharedText::text() const
{
    static const QString empty(QLatin1String(""));
    return m_entry ? m_entry->text : empty;
}

const QByteArray& SharedText::folded() const
{
    static const QByteArray empty;
    if (!m_entry)
        return empty;
    if (const QByteArray* known = m_entry->folded.load(std::memory_order_acquire))
        return *known;
    auto* made = new QByteArray(foldedText(m_entry->text));
    const QByteArray* expected = nullptr;
    if (m_entry->folded.compare_exchange_strong(expected, made, std::memory_order_acq_rel))
        return *made;
    delete made;
    return *expected;
}

} // namespace fms
