#pragma once

#include <QEvent>

// Sent once to every top-level widget when a preview finds that a catalogued font's file is gone: a hook for windows
// that want to react; none of ours does.
class NonexistingFontFileEvent : public QEvent
{
public:
    NonexistingFontFileEvent();

    static QEvent::Type eventType();
};
