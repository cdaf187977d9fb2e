#pragma once

#include <QToolButton>

// A tool button that tells when the mouse comes and goes.
class KrvToolButton : public QToolButton
{
    Q_OBJECT

public:
    explicit KrvToolButton(QWidget* parent = nullptr);

signals:
    void mouseEntered();
    void mouseLeft();

protected:
    void enterEvent(QEvent* event) override;
    void leaveEvent(QEvent* event) override;
};
