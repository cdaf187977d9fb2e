#include "qtService/management/UserFontGroup.h"

#include "qtService/database/MatchingCriteria.h"
#include "qtService/database/StaticFont.h"
#include "qtService/database/UserDatabaseAccess.h"

UserFontGroup::UserFontGroup(const QSharedPointer<FontCollectionInterface>& source, KrvUserDatabase* userDatabase,
                             int groupId)
    : FontGroup(source, userDatabase->groupName(groupId), Start::Empty)
    , m_userDatabase(userDatabase->access())
    , m_groupId(groupId)
{
    connect(userDatabase, &KrvUserDatabase::groupRenamed, this, &UserFontGroup::onGroupRenamed);
    connect(userDatabase, &KrvUserDatabase::groupCleared, this, &UserFontGroup::onGroupCleared);
    connect(userDatabase, &KrvUserDatabase::fontGroupsChanged, this, &UserFontGroup::onFontGroupsChanged);
    reload(false);
}

UserFontGroup::UserFontGroup(const QSharedPointer<FontCollectionInterface>& source, KrvUserDatabase* userDatabase,
                             const KrvUserDatabase::Group& group, const QList<KrvUserDatabase::FontHash>& fontHashes)
    : FontGroup(source, group.name, Start::Empty)
    , m_userDatabase(userDatabase->access())
    , m_groupId(group.id)
{
    setMembers(takeAll(fontHashes));
}

int UserFontGroup::groupId() const
{
    return m_groupId;
}

void UserFontGroup::reload(bool notify)
{
    QStringList hashes;
    if (!m_userDatabase->use([&](const KrvUserDatabase& database) { hashes = database.groupFontHashes({m_groupId}); }))
        return;
    const QList<int> ids = takeAll(hashes);
    if (notify)
        replaceMembers(ids);
    else
        setMembers(ids);
}

QList<int> UserFontGroup::takeAll(const QList<KrvUserDatabase::FontHash>& fontHashes)
{
    m_absentHashes = QSet<QString>(fontHashes.cbegin(), fontHashes.cend());
    m_memberHashes.clear();
    return takePresent(fontsWithHashes(m_absentHashes));
}

QList<StaticFontPtr> UserFontGroup::fontsWithHashes(const QSet<KrvUserDatabase::FontHash>& hashes) const
{
    if (hashes.isEmpty())
        return {};
    return source()->findMatchingFonts(MatchingCriteria::allOf(
        {MatchingCriteria::leaf(MatchingCriteria::InList, QStringLiteral("fontHash"), QStringList(hashes.values()))}));
}

// Takes those of the fonts that the group misses out of what it misses; their ids. Copies of a font in one folder whose
// names differ in letters beyond Latin-1 only share a hash, and belong here together.
QList<int> UserFontGroup::takePresent(const QList<StaticFontPtr>& fonts)
{
    QList<int> ids;
    QSet<QString> present;
    for (const StaticFontPtr& font : fonts) {
        const QString hash = font->fontHash();
        if (!m_absentHashes.contains(hash))
            continue;
        ids.append(font->id());
        m_memberHashes.insert(ids.last(), hash);
        present.insert(hash);
    }
    m_absentHashes.subtract(present);
    return ids;
}

void UserFontGroup::onFontsAddedToSource(const QList<int>& fontIdList)
{
    if (m_absentHashes.isEmpty())
        return;
    // Ten thousand fonts come, and the group misses twenty: those are looked up instead.
    const QList<int> added = insertMembers(takePresent(
        m_absentHashes.size() < fontIdList.size() ? fontsWithHashes(m_absentHashes) : recordsInSource(fontIdList)));
    if (!added.isEmpty())
        emit fontsAdded(added);
}

void UserFontGroup::onFontsRemovedFromSource(const QList<int>& fontIdList)
{
    const QList<int> removed = eraseMembers(fontIdList);
    for (int id : removed)
        m_absentHashes.insert(m_memberHashes.take(id));
    if (!removed.isEmpty())
        emit fontsRemoved(removed);
}

void UserFontGroup::onSourceFontsChanged(const QList<int>& fontIdList)
{
    const QList<int> changed = membersAmong(fontIdList);
    if (!changed.isEmpty())
        emit fontsChanged(changed);
}

void UserFontGroup::onGroupRenamed(int groupId)
{
    if (groupId != m_groupId)
        return;
    QString name;
    if (m_userDatabase->use([&](const KrvUserDatabase& database) { name = database.groupName(m_groupId); }))
        setName(name);
}

void UserFontGroup::onGroupCleared(int groupId)
{
    if (groupId != m_groupId)
        return;
    // What was added again between the clearing and this call stays.
    reload(true);
}

void UserFontGroup::onFontGroupsChanged(const QList<KrvUserDatabase::FontHash>& fontHashList, int groupId)
{
    Q_UNUSED(fontHashList)
    if (groupId == m_groupId)
        reload(true);
}
