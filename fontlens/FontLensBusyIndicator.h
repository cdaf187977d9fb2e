#pragma once

#include <QTimer>
#include <QWidget>

class QLabel;
class QProgressIndicator;
class QPushButton;

// Tells over the picture that an answer is awaited, what for, and lets the user stop waiting. Hidden while idle, and
// for the first moment of every wait: most answers come within it.
class FontLensBusyIndicator : public QWidget
{
    Q_OBJECT

public:
    explicit FontLensBusyIndicator(QWidget* parent = nullptr);

    void start(const QString& text);
    void stop();
    bool isBusy() const { return m_busy; }
    // Follows the area that it lies over, in the parent's coordinates.
    void centreIn(const QRect& area);

signals:
    void cancelled();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    bool m_busy = false;
    QTimer m_patience;
    QRect m_area;
    QProgressIndicator* m_indicator;
    QLabel* m_text;
    QPushButton* m_cancel;
};
