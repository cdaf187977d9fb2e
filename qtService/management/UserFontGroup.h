#pragma once

#include "qtService/database/KrvUserDatabase.h"
#include "qtService/management/FontGroup.h"

#include <QHash>
#include <QSet>
#include <QSharedPointer>

class UserDatabaseAccess;

// The fonts of one of the user's groups in user.db, as far as the source has them.
class UserFontGroup : public FontGroup
{
    Q_OBJECT

public:
    UserFontGroup(const QSharedPointer<FontCollectionInterface>& source, KrvUserDatabase* userDatabase, int groupId);
    // For UserFontGroupList, which has read what all groups hold at once, and hands on what changes by calling the
    // slots below: a change that each of 10,000 groups hears of is an event for each.
    UserFontGroup(const QSharedPointer<FontCollectionInterface>& source, KrvUserDatabase* userDatabase,
                  const KrvUserDatabase::Group& group, const QList<KrvUserDatabase::FontHash>& fontHashes);

    int groupId() const;

public slots:
    void onGroupRenamed(int groupId);
    void onGroupCleared(int groupId);
    void onFontGroupsChanged(const QList<KrvUserDatabase::FontHash>& fontHashList, int groupId);

protected slots:
    void onFontsAddedToSource(const QList<int>& fontIdList) override;
    void onFontsRemovedFromSource(const QList<int>& fontIdList) override;
    void onSourceFontsChanged(const QList<int>& fontIdList) override;

private:
    void reload(bool notify);
    QList<int> takeAll(const QList<KrvUserDatabase::FontHash>& fontHashes);
    QList<int> takePresent(const QList<StaticFontPtr>& fonts);
    QList<StaticFontPtr> fontsWithHashes(const QSet<KrvUserDatabase::FontHash>& hashes) const;

    const QSharedPointer<const UserDatabaseAccess> m_userDatabase; // a window may show the group after it closed
    int m_groupId;
    // The group in user.db: the hashes of the members, and of the fonts that the source does not have now. What comes
    // into the source is compared with these only. Used on the group's thread.
    QHash<int, KrvUserDatabase::FontHash> m_memberHashes;
    QSet<KrvUserDatabase::FontHash> m_absentHashes;
};
