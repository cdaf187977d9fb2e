#include "qtService/ui/sidebar/KrvUserGroupsViewModel.h"

#include "qtService/management/UserFontGroupList.h"

KrvUserGroupsViewModel::KrvUserGroupsViewModel(const QSharedPointer<UserFontGroupList>& groups, QObject* parent)
    : KrvGroupsViewModel(groups, parent)
{
    connect(groups.data(), &FontGroupList::groupRenamed, this, &KrvUserGroupsViewModel::updateGroup);
    connect(groups.data(), &FontGroupList::groupAdded, this, &KrvUserGroupsViewModel::onGroupAdded);
    connect(groups.data(), &FontGroupList::groupRemoved, this, &KrvUserGroupsViewModel::onGroupRemoved);
}

void KrvUserGroupsViewModel::onFontGroupsChanged(QList<int>, int groupId)
{
    updateGroup(groupId);
}

void KrvUserGroupsViewModel::updateGroup(int groupId)
{
    announceGroup(groupId);
}

void KrvUserGroupsViewModel::onGroupAdded(int groupId)
{
    insertGroup(groupId);
}

void KrvUserGroupsViewModel::onGroupRemoved(int groupId)
{
    eraseGroup(groupId);
}
