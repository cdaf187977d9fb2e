#include "qtService/ui/search/KrvToolButton.h"

KrvToolButton::KrvToolButton(QWidget* parent)
    : QToolButton(parent)
{
}

void KrvToolButton::enterEvent(QEvent* event)
{
    QToolButton::enterEvent(event);
    emit mouseEntered();
}

void KrvToolButton::leaveEvent(QEvent* event)
{
    QToolButton::leaveEvent(event);
    emit mouseLeft();
}
