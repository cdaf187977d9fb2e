#include "qtService/ui/preferences/AbstractPreferencesWindowTab.h"

AbstractPreferencesWindowTab::AbstractPreferencesWindowTab(QWidget* parent)
    : QWidget(parent)
{
}
