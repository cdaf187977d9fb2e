#include "qtService/management/systemfm/EventFilter.h"

#include <windows.h>

namespace kerval::systemfm {

EventFilter::EventFilter(const std::function<void()>& onFontChange)
    : m_onFontChange(onFontChange)
{
}

bool EventFilter::nativeEventFilter(const QByteArray&, void* message, long*)
{
    if (static_cast<const MSG*>(message)->message == WM_FONTCHANGE)
        m_onFontChange();
    return false;
}

} // namespace kerval::systemfm
