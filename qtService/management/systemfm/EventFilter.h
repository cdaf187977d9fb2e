#pragma once

#include <QAbstractNativeEventFilter>

#include <functional>

namespace kerval::systemfm {

// Listens to the window messages of the application for the one that says that fonts have changed. Lets every message
// pass.
class EventFilter : public QAbstractNativeEventFilter
{
public:
    explicit EventFilter(const std::function<void()>& onFontChange);

    bool nativeEventFilter(const QByteArray& eventType, void* message, long* result) override;

private:
    std::function<void()> m_onFontChange;
};

} // namespace kerval::systemfm
