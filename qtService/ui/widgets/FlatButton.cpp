#include "qtService/ui/widgets/FlatButton.h"

#include <QStyleOptionButton>
#include <QStylePainter>

FlatButton::FlatButton(const QIcon& icon, const QString& text, QWidget* parent)
    : QPushButton(icon, text, parent)
{
    setFlat(true);
}

void FlatButton::paintEvent(QPaintEvent*)
{
    QStylePainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    const QStyle::State focused = QStyle::State_HasFocus | QStyle::State_KeyboardFocusChange;
    const QStyle::State underMouse = QStyle::State_MouseOver | QStyle::State_Enabled;
    if ((option.state & focused) == focused || (option.state & underMouse) == underMouse)
        option.features &= ~QStyleOptionButton::ButtonFeatures(QStyleOptionButton::Flat);
    painter.drawControl(QStyle::CE_PushButton, option);
}
