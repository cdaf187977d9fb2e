#pragma once

#include "qtService/ui/preferences/AbstractPreferencesWindow.h"

// The program's preferences: "General" and "Messages".
class PreferencesWindow : public AbstractPreferencesWindow
{
    Q_OBJECT

public:
    explicit PreferencesWindow(QWidget* parent = nullptr);
};
