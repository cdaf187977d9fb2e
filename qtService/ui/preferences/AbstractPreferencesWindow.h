#pragma once

#include <QDialog>

class AbstractPreferencesWindowTab;
class QActionGroup;
class QIcon;
class QStackedWidget;
class QToolBar;

// A window of pages that are chosen in a bar at the top. Main thread.
class AbstractPreferencesWindow : public QDialog
{
    Q_OBJECT

public:
    explicit AbstractPreferencesWindow(QWidget* parent = nullptr);

    void addTab(const QIcon& icon, const QString& text, AbstractPreferencesWindowTab* tab);

public slots:
    void show();

signals:
    void saveData();
    void loadData();

private slots:
    void onTabClicked();

private:
    QToolBar* m_bar;
    QActionGroup* m_actions;
    QStackedWidget* m_pages;
};
