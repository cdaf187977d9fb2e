#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

// The strip above the font list: the name of what is shown, how many fonts that is, and the way back and forward
// through similarity results.
class FontListHeaderWidget : public QWidget
{
    Q_OBJECT

public:
    explicit FontListHeaderWidget(QWidget* parent = nullptr);

    void setTitle(const QString& title);
    // How many fonts the list shows of how many.
    void setCount(int shown, int all, int selected);
    void setNavigation(bool hasBack, bool hasForward);

signals:
    void backButtonClicked();
    void forwardButtonClicked();

protected:
    void changeEvent(QEvent* event) override;

private:
    QPushButton* m_back;
    QPushButton* m_forward;
    QLabel* m_title;
    QLabel* m_count;
};
