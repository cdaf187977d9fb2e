#include "qtService/ui/preferences/PreferencesWindow.h"

#include "qtService/ui/preferences/FMSScanPathSettings.h"
#include "qtService/ui/preferences/KrvMessageSettingsUI.h"
#include "qtService/ui/window/WindowIcons.h"

PreferencesWindow::PreferencesWindow(QWidget* parent)
    : AbstractPreferencesWindow(parent)
{
    setObjectName(QStringLiteral("PreferencesWindow"));
    addTab(ui::icon(QStringLiteral(":/new_icons/settings")), tr("General"), new FMSScanPathSettings(this));
    addTab(ui::icon(QStringLiteral(":/new_icons/notification")), tr("Messages"), new KrvMessageSettingsUI(this));
}
