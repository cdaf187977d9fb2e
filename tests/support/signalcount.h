#pragma once

#include <QObject>

namespace kerval::testing {

// Counts a signal of an object that lives on another thread, as its emissions arrive on this one. A QSignalSpy would
// note them over there, while this thread reads it or takes it away.
class SignalCount : public QObject
{
public:
    template <class Sender, class Signal>
    SignalCount(const Sender* sender, Signal signal)
    {
        connect(sender, signal, this, [this] { ++m_count; });
    }

    bool isEmpty() const { return m_count == 0; }
    int size() const { return m_count; }

private:
    int m_count = 0;
};

} // namespace kerval::testing
