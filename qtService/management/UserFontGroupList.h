#pragma once

#include "qtService/database/KrvUserDatabase.h"
#include "qtService/management/FontGroupList.h"

class UserFontGroup;

// The groups of user.db; follows their coming and going. A group is listed by the time the call that made it in the
// user database returns.
class UserFontGroupList : public FontGroupList
{
    Q_OBJECT

public:
    UserFontGroupList(const QSharedPointer<FontCollectionInterface>& source, KrvUserDatabase* userDatabase);

private slots:
    void onGroupAdded(int groupId);
    void onGroupRemoved(int groupId);
    void onGroupRenamed(int groupId);
    void onGroupCleared(int groupId);
    void onFontGroupsChanged(const QList<KrvUserDatabase::FontHash>& fontHashList, int groupId);

private:
    QSharedPointer<UserFontGroup> userGroup(int groupId) const;

    QSharedPointer<FontCollectionInterface> m_source;
    KrvUserDatabase* m_userDatabase;
};
