#pragma once

#include <QByteArray>
#include <QString>

#include <utility>

namespace fms {

// A text that many records hold: equal texts share one copy in the process, which goes with its last holder. A handle
// has the size of a pointer, copying costs an atomic increment, making one a look-up of the pool. Any thread may make,
// copy and drop handles; a single handle is guarded by its owner, like any value.
class SharedText
{
public:
    SharedText() = default;
    explicit SharedText(const QString& text);
    SharedText(const SharedText& other);
    SharedText(SharedText&& other) noexcept
        : m_entry(std::exchange(other.m_entry, nullptr))
    {
    }
    SharedText& operator=(SharedText other) noexcept
    {
        std::swap(m_entry, other.m_entry);
        return *this;
    }
    ~SharedText();

    // Never null, so that it is stored as a text and not as an absent value.
    const QString& text() const;
    // The text as foldedText() makes it, computed once for all holders.
    const QByteArray& folded() const;
    // Equal for equal texts, while a holder lives.
    const void* identity() const { return m_entry; }

    struct Entry;

private:
    Entry* m_entry = nullptr; // null for the empty text
};

} // namespace fms
