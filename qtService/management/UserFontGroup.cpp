#include "qtService/management/UserFontGroup.h"

#include "qtService/database/MatchingCriteria.h"
#include "qtService/database/StaticFont.h"

UserFontGroup::UserFontGroup(const QSharedPointer<FontCollectionInterface>& source, KrvUserDatabase* userDatabase,
                             int groupId)
    : FontGroup(source, userDatabase->groupName(groupId), Start::Empty)
    , m_userDatabase(userDatabase)
    , m_groupId(groupId)
{
    connect(userDatabase, &KrvUserDatabase::groupRenamed, this, &UserFontGroup::onGroupRenamed);
    connect(userDatabase, &KrvUserDatabase::groupCleared, this, &UserFontGroup::onGroupCleared);
    connect(userDatabase, &KrvUserDatabase::fontGroupsChanged, this, &UserFontGroup::onFontGroupsChanged);
    reload(false);
}

int UserFontGroup::groupId() const
{
    return m_groupId;
}

void UserFontGroup::reload(bool notify)
{
    if (!m_userDatabase)
        return;
    const QStringList hashes = m_userDatabase->groupFontHashes({m_groupId});
    m_fontHashes = QSet<QString>(hashes.cbegin(), hashes.cend());
    const QList<int> ids = fontsWithHashes();
    if (notify)
        replaceMembers(ids);
    else
        setMembers(ids);
}

QList<int> UserFontGroup::fontsWithHashes() const
{
    if (m_fontHashes.isEmpty())
        return {};
    return source()->findMatchingFontIds(MatchingCriteria::allOf({MatchingCriteria::leaf(
        MatchingCriteria::InList, QStringLiteral("fontHash"), QStringList(m_fontHashes.values()))}));
}

void UserFontGroup::onFontsAddedToSource(const QList<int>& fontIdList)
{
    QList<int> ids;
    if (m_fontHashes.size() < fontIdList.size()) {
        // Ten thousand fonts come, and the group has twenty: those are looked up instead.
        const QSet<int> coming(fontIdList.cbegin(), fontIdList.cend());
        for (int id : fontsWithHashes()) {
            if (coming.contains(id))
                ids.append(id);
        }
    } else {
        for (const StaticFontPtr& font : recordsInSource(fontIdList)) {
            if (m_fontHashes.contains(font->fontHash()))
                ids.append(font->id());
        }
    }
    const QList<int> added = insertMembers(ids);
    if (!added.isEmpty())
        emit fontsAdded(added);
}

void UserFontGroup::onSourceFontsChanged(const QList<int>& fontIdList)
{
    const QList<int> changed = membersAmong(fontIdList);
    if (!changed.isEmpty())
        emit fontsChanged(changed);
}

void UserFontGroup::onGroupRenamed(int groupId)
{
    if (groupId == m_groupId && m_userDatabase)
        setName(m_userDatabase->groupName(m_groupId));
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
