#pragma once

#include "qtService/app/core/KrvUiSettings.h"
#include "qtService/management/FontGroup.h"

#include <QTimer>
#include <QWidget>

class SideBarDelegate;
class SideBarModel;
class SystemFontGroupList;
class UserFontGroupList;
class QFrame;
class QMimeData;
class QTreeView;

// The column at the left in which the user chooses a group; fonts can be dropped onto its rows. Main thread.
class SideBarWidget : public QWidget
{
    Q_OBJECT

public:
    explicit SideBarWidget(QWidget* parent = nullptr);

    void setGroups(const QSharedPointer<SystemFontGroupList>& systemGroups,
                   const QSharedPointer<UserFontGroupList>& userGroups);

    // 0: none, or a header
    int selectedGroupId() const;
    // Positive; 0 when no group of the user's is selected.
    int selectedUserGroupId() const;
    FontGroupPtr selectedGroup() const;
    void selectGroup(int id);
    void clearSelection();

signals:
    void groupIdSelected(int groupId);
    void groupSelected(FontGroupPtr fontGroup);
    void contextMenuRequested(int fontGroup, QPoint widgetPos);
    void fontsDropped(QList<int> fontIdList, int groupId);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void changeEvent(QEvent* event) override;

private slots:
    void onGroupSelectionChanged();
    void viewContextMenuRequest(QPoint pos);
    void onUiSettingsChanged(KrvUiSettings::SettingId id);
    void sortGroups();

private:
    void setupUi();
    void applyStyle();
    int groupIdAt(const QPoint& pos) const;
    // Where the fonts being dragged are; the row under them is marked, and at the edges the bar scrolls.
    void dragTo(const QPoint& pos);
    void endDrag();
    void scrollDrag();

    QFrame* m_frame;
    QTreeView* m_view;
    SideBarDelegate* m_delegate;
    int m_lookedAt = 0; // the group last selected; 0: none
    QTimer m_dragScroll;
    QPoint m_dragPosition;
    SideBarModel* m_model = nullptr;
    QSharedPointer<SystemFontGroupList> m_systemGroups;
    QSharedPointer<UserFontGroupList> m_userGroups;
};
