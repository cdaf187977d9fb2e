#pragma once

#include <QHash>
#include <QIcon>
#include <QMenu>
#include <QObject>
#include <QSystemTrayIcon>

// The icon in the notification area and its menu. Where there is no such area nothing is shown and nothing depends on
// it. Main thread.
class FMSTrayIcon : public QObject
{
    Q_OBJECT

public:
    enum ActionId
    {
        QuitAction = 0,
        ControlCenterAction = 1,
        LogAction = 4,
        PreferencesAction = 5,
        CheckForUpdatesAction = 6,
        FontManagerAction = 7
    };

    explicit FMSTrayIcon(QObject* parent = nullptr);
    ~FMSTrayIcon() override;

    void setEnabled(bool enabled);
    // The title of balloons.
    void setTitle(const QString& title);
    void setToolTip(const QString& toolTip);
    void showMessage(const QString& text, int milliseconds, QSystemTrayIcon::MessageIcon icon);
    // Null for an id that does not exist.
    QAction* action(int id) const;

signals:
    void messageDisplayed();
    void messageClicked();

private slots:
    void onTrayActivated(QSystemTrayIcon::ActivationReason reason);
    void onAboutToShow();
    void onAboutToHide();

private:
    QIcon m_icon;
    QIcon m_openIcon;
    QSystemTrayIcon m_tray;
    QMenu m_menu;
    QHash<int, QAction*> m_actions;
    QString m_title;
};
