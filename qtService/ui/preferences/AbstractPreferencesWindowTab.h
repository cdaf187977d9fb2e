#pragma once

#include <QWidget>

// A page of the preferences: shows what is stored when the window opens, stores what it shows when the user confirms.
class AbstractPreferencesWindowTab : public QWidget
{
    Q_OBJECT

public:
    explicit AbstractPreferencesWindowTab(QWidget* parent = nullptr);

public slots:
    virtual void saveData() = 0;
    virtual void loadData() = 0;
};
