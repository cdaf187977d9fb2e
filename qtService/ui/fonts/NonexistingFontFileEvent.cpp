#include "qtService/ui/fonts/NonexistingFontFileEvent.h"

NonexistingFontFileEvent::NonexistingFontFileEvent()
    : QEvent(eventType())
{
}

QEvent::Type NonexistingFontFileEvent::eventType()
{
    constexpr int number = 1001;
    static const int registered = QEvent::registerEventType(number);
    Q_UNUSED(registered)
    return QEvent::Type(number);
}
