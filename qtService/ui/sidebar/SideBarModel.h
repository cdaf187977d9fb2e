#pragma once

#include <QSharedPointer>
#include <QStandardItemModel>

class FontGroupList;
class SystemFontGroupList;
class UserFontGroupList;

// The groups a user chooses from: "Library" with the standard groups, "Groups" with the user's own. It follows the two
// lists by itself; only the user's groups are ever sorted. Main thread.
class SideBarModel : public QStandardItemModel
{
    Q_OBJECT

public:
    enum Role
    {
        GroupIdRole = 257, // grows with creation
        FontCountRole = 258,
        NameRole = 259,
        IconRole = 260,
        SelectedIconRole = 261
    };

    SideBarModel(const QSharedPointer<SystemFontGroupList>& systemGroups,
                 const QSharedPointer<UserFontGroupList>& userGroups, qreal devicePixelRatio,
                 QObject* parent = nullptr);

    // Invalid when the group is not shown.
    QModelIndex indexOfGroup(int groupId) const;

    using QStandardItemModel::sort;
    void setSortRole(int role);
    void sort(int column, Qt::SortOrder order) override;

private slots:
    void onGroupFontCountChanged(int groupId);
    void onGroupRenamed(int groupId);
    void onGroupAdded(int groupId);
    void onGroupRemoved(int groupId);

private:
    QStandardItem* itemOfGroup(int groupId) const;
    QStandardItem* makeItem(FontGroupList* list, int groupId) const;
    FontGroupList* listOf(int groupId) const;

    QSharedPointer<SystemFontGroupList> m_systemGroups;
    QSharedPointer<UserFontGroupList> m_userGroups;
    qreal m_devicePixelRatio;
    QStandardItem* m_library;
    QStandardItem* m_groups;
};
