#pragma once

#include <QSharedPointer>
#include <QWidget>

class FontAdder;
class QLabel;
class QProgressBar;
class QPushButton;

// A strip that shows the font scanner's progress; visible while there is any, above all while work left from the last
// run waits to be resumed. Main thread.
class FontAdderStatusWidget : public QWidget
{
    Q_OBJECT

public:
    FontAdderStatusWidget(const QSharedPointer<FontAdder>& adder, QWidget* parent);

private slots:
    void onFontAdderStatusChanged();

private:
    QSharedPointer<FontAdder> m_adder;
    QLabel* m_status;
    QProgressBar* m_bar;
    QPushButton* m_resume;
    QPushButton* m_abort;
};
