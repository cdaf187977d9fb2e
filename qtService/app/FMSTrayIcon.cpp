#include "qtService/app/FMSTrayIcon.h"

#include <QAction>

namespace {

QIcon trayIcon()
{
    QIcon icon;
    icon.addFile(QStringLiteral(":/new_icons/tray_icon_inactive_win16x16.png"));
    icon.addFile(QStringLiteral(":/new_icons/tray_icon_inactive_win32x32.png"));
    return icon;
}

} // namespace

FMSTrayIcon::FMSTrayIcon(QObject* parent)
    : QObject(parent)
    , m_icon(trayIcon())
    , m_openIcon(trayIcon())
{
    struct Entry
    {
        int id; // below zero: a separator
        QString text;
    };
    const Entry entries[] = {{FontManagerAction, tr("Font Manager")},
                             {ControlCenterAction, tr("&Control Center")},
                             {-1, QString()},
                             {LogAction, tr("&Log")},
                             {-1, QString()},
                             {PreferencesAction, tr("&Preferences")},
                             {CheckForUpdatesAction, tr("&Check for Updates")},
                             {-1, QString()},
                             {QuitAction, tr("&Quit")}};
    for (const Entry& entry : entries) {
        if (entry.id < 0)
            m_menu.addSeparator();
        else
            m_actions.insert(entry.id, m_menu.addAction(entry.text));
    }
    m_tray.setIcon(m_icon);
    m_tray.setContextMenu(&m_menu);
    m_tray.setVisible(true);
    connect(&m_menu, &QMenu::aboutToShow, this, &FMSTrayIcon::onAboutToShow);
    connect(&m_menu, &QMenu::aboutToHide, this, &FMSTrayIcon::onAboutToHide);
    connect(&m_tray, &QSystemTrayIcon::activated, this, &FMSTrayIcon::onTrayActivated);
    connect(&m_tray, &QSystemTrayIcon::messageClicked, this, &FMSTrayIcon::messageClicked);
}

FMSTrayIcon::~FMSTrayIcon() = default;

void FMSTrayIcon::setEnabled(bool enabled)
{
    m_menu.setEnabled(enabled);
}

void FMSTrayIcon::setTitle(const QString& title)
{
    m_title = title;
}

void FMSTrayIcon::setToolTip(const QString& toolTip)
{
    m_tray.setToolTip(toolTip);
}

void FMSTrayIcon::showMessage(const QString& text, int milliseconds, QSystemTrayIcon::MessageIcon icon)
{
    m_tray.showMessage(m_title, text, icon, milliseconds);
    emit messageDisplayed();
}

QAction* FMSTrayIcon::action(int id) const
{
    return m_actions.value(id);
}

void FMSTrayIcon::onTrayActivated(QSystemTrayIcon::ActivationReason reason)
{
    if (reason == QSystemTrayIcon::DoubleClick && m_menu.isEnabled())
        action(FontManagerAction)->trigger();
}

void FMSTrayIcon::onAboutToShow()
{
    m_tray.setIcon(m_openIcon);
}

void FMSTrayIcon::onAboutToHide()
{
    m_tray.setIcon(m_icon);
}
