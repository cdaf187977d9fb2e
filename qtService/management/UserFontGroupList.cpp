#include "qtService/management/UserFontGroupList.h"

#include "qtService/database/KrvUserDatabase.h"
#include "qtService/management/UserFontGroup.h"

UserFontGroupList::UserFontGroupList(const QSharedPointer<FontCollectionInterface>& source,
                                     KrvUserDatabase* userDatabase)
    : m_source(source)
    , m_userDatabase(userDatabase)
{
    // Direct, so that the maker of a group finds it listed. Connected first: a group made meanwhile is met twice.
    connect(userDatabase, &KrvUserDatabase::groupAdded, this, &UserFontGroupList::onGroupAdded, Qt::DirectConnection);
    connect(userDatabase, &KrvUserDatabase::groupRemoved, this, &UserFontGroupList::onGroupRemoved,
            Qt::DirectConnection);
    connect(userDatabase, &KrvUserDatabase::groupRenamed, this, &UserFontGroupList::onGroupRenamed);
    connect(userDatabase, &KrvUserDatabase::groupCleared, this, &UserFontGroupList::onGroupCleared);
    connect(userDatabase, &KrvUserDatabase::fontGroupsChanged, this, &UserFontGroupList::onFontGroupsChanged);
    const QList<KrvUserDatabase::Group> groups = userDatabase->groups();
    const QHash<int, QList<KrvUserDatabase::FontHash>> members = userDatabase->fontHashesOfGroups();
    for (const KrvUserDatabase::Group& group : groups) {
        if (!containsGroup(group.id))
            addGroup(group.id, makeFontGroup<UserFontGroup>(m_source, userDatabase, group, members.value(group.id)));
    }
}

QSharedPointer<UserFontGroup> UserFontGroupList::userGroup(int groupId) const
{
    return group(groupId).objectCast<UserFontGroup>();
}

void UserFontGroupList::onGroupAdded(int groupId)
{
    if (containsGroup(groupId))
        return;
    KrvUserDatabase::Group group;
    group.id = groupId;
    group.name = m_userDatabase->groupName(groupId);
    const QList<KrvUserDatabase::FontHash> members = m_userDatabase->groupFontHashes({groupId});
    addGroup(groupId, makeFontGroup<UserFontGroup>(m_source, m_userDatabase, group, members));
}

void UserFontGroupList::onGroupRemoved(int groupId)
{
    removeGroup(groupId);
}

void UserFontGroupList::onGroupRenamed(int groupId)
{
    if (const auto group = userGroup(groupId))
        group->onGroupRenamed(groupId);
}

void UserFontGroupList::onGroupCleared(int groupId)
{
    if (const auto group = userGroup(groupId))
        group->onGroupCleared(groupId);
}

void UserFontGroupList::onFontGroupsChanged(const QList<KrvUserDatabase::FontHash>& fontHashList, int groupId)
{
    if (const auto group = userGroup(groupId))
        group->onFontGroupsChanged(fontHashList, groupId);
}
