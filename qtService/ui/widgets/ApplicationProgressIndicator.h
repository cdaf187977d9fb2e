#pragma once

#include <QWidget>

class ApplicationProgressIndicatorPrivate;

// Mirrors a progress on the program's taskbar button; where no taskbar listens the operations do nothing. The window
// outlives it. Main thread.
class ApplicationProgressIndicator
{
public:
    explicit ApplicationProgressIndicator(QWidget* window);
    ~ApplicationProgressIndicator();
    Q_DISABLE_COPY(ApplicationProgressIndicator)

    void setRange(int minimum, int maximum);
    void setValue(int value);
    void setPaused(bool paused);
    void setVisible(bool visible);

private:
    ApplicationProgressIndicatorPrivate* m_private;
};
