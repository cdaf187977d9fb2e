#pragma once

#include <QBasicTimer>
#include <QWidget>

// A ring of fading spokes that turns while something is going on.
class QProgressIndicator : public QWidget
{
    Q_OBJECT

public:
    explicit QProgressIndicator(QWidget* parent = nullptr);

    QSize sizeHint() const override;
    bool isAnimated() const { return m_timer.isActive(); }

public slots:
    void startAnimation();
    void stopAnimation();

protected:
    void timerEvent(QTimerEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QBasicTimer m_timer;
    int m_step = 0;
};
