#pragma once

#include "qtService/database/KrvUserDatabase.h"
#include "qtService/management/FontGroup.h"

#include <QPointer>
#include <QSet>

// The fonts of one of the user's groups in user.db, as far as the source has them.
class UserFontGroup : public FontGroup
{
    Q_OBJECT

public:
    UserFontGroup(const QSharedPointer<FontCollectionInterface>& source, KrvUserDatabase* userDatabase, int groupId);

    int groupId() const;

protected slots:
    void onFontsAddedToSource(const QList<int>& fontIdList) override;
    void onSourceFontsChanged(const QList<int>& fontIdList) override;

private slots:
    void onGroupRenamed(int groupId);
    void onGroupCleared(int groupId);
    void onFontGroupsChanged(const QList<KrvUserDatabase::FontHash>& fontHashList, int groupId);

private:
    void reload(bool notify);
    QList<int> fontsWithHashes() const;

    QPointer<KrvUserDatabase> m_userDatabase;
    int m_groupId;
    QSet<KrvUserDatabase::FontHash> m_fontHashes; // the group's fonts in user.db; used on the group's thread only
};
