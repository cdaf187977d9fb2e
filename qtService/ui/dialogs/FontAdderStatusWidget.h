#pragma once

#include <QSharedPointer>
#include <QWidget>

#include <memory>

class ApplicationProgressIndicator;
class FontAdder;
class QLabel;
class QProgressBar;
class QPushButton;

// A strip that shows the font scanner's progress; visible while there is any, above all while work left from the last
// run waits to be resumed. The program's taskbar button shows the same, whether the window is open or not. Main thread.
class FontAdderStatusWidget : public QWidget
{
    Q_OBJECT

public:
    FontAdderStatusWidget(const QSharedPointer<FontAdder>& adder, QWidget* parent);
    ~FontAdderStatusWidget() override;

private slots:
    void onFontAdderStatusChanged();

private:
    QSharedPointer<FontAdder> m_adder;
    std::unique_ptr<ApplicationProgressIndicator> m_taskbar;
    QLabel* m_status;
    QProgressBar* m_bar;
    QPushButton* m_resume;
    QPushButton* m_abort;
};
