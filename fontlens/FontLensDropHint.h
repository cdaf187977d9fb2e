#pragma once

#include <QWidget>

// What the view shows while no picture is open, and while one is dragged over the window: where to drop it, and the
// other ways to bring one in. Lets the mouse through.
class FontLensDropHint : public QWidget
{
    Q_OBJECT

public:
    explicit FontLensDropHint(QWidget* parent = nullptr);

    // Answers the picture that hovers over it.
    void setHighlighted(bool highlighted);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    bool m_highlighted = false;
};
