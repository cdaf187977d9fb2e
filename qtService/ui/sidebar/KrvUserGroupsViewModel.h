#pragma once

#include "qtService/ui/sidebar/KrvGroupsViewModel.h"

class UserFontGroupList;

// The user's own groups as plain rows; follows their coming, going and renaming.
class KrvUserGroupsViewModel : public KrvGroupsViewModel
{
    Q_OBJECT

public:
    explicit KrvUserGroupsViewModel(const QSharedPointer<UserFontGroupList>& groups, QObject* parent = nullptr);

private slots:
    void onFontGroupsChanged(QList<int> fontIds, int groupId);
    void updateGroup(int groupId);
    void onGroupAdded(int groupId);
    void onGroupRemoved(int groupId);
};
