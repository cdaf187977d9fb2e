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
    for (const KrvUserDatabase::Group& group : userDatabase->groups())
        onGroupAdded(group.id);
}

void UserFontGroupList::onGroupAdded(int groupId)
{
    if (!containsGroup(groupId))
        addGroup(groupId, makeFontGroup<UserFontGroup>(m_source, m_userDatabase, groupId));
}

void UserFontGroupList::onGroupRemoved(int groupId)
{
    removeGroup(groupId);
}
