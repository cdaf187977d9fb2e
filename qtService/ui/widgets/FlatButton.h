#pragma once

#include <QPushButton>

// A flat button that has its frame while it has the keyboard's focus or the mouse: styles show the focus on the frame.
class FlatButton : public QPushButton
{
    Q_OBJECT

public:
    FlatButton(const QIcon& icon, const QString& text, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
};
