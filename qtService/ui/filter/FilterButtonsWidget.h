#pragma once

#include <QWidget>

class QAbstractButton;
class QPushButton;

// The row of buttons that open one page of the tools area, or none; their ids are the pages' indexes.
class FilterButtonsWidget : public QWidget
{
    Q_OBJECT

public:
    explicit FilterButtonsWidget(QWidget* parent = nullptr);

    void setResetButtonVisible(bool visible);
    // Checks the button of a page; -1 unchecks all.
    void setCurrentPage(int page);
    int currentPage() const;

signals:
    void allButtonsUnchecked();
    void buttonToggled(int buttonId, bool checked);
    void filterResetPressed();

private:
    QList<QPushButton*> m_pages;
    QPushButton* m_reset;
};
