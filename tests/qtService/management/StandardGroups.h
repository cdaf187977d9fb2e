#pragma once

#include "qtService/management/ExistingFontsGroup.h"
#include "qtService/management/SystemFontGroupList.h"
#include "qtService/management/UserFontGroupList.h"

// The groups as the service makes them, with a smaller limit for the recent ones, and beside each a set of ids that
// follows nothing but its signals.
class StandardGroups
{
public:
    static constexpr int RecentLimit = 7;

    StandardGroups(const QSharedPointer<FontCollectionInterface>& repository, KrvUserDatabase* userDatabase);

    FontGroupPtr group(int groupId) const;
    QSet<int> members(int groupId) const;
    QList<int> groupIds() const;
    // What the group's signals have said so far.
    QSet<int> heardOf(int groupId) const;
    void watch(int groupId);

    ExistingFontsGroupPtr existing;
    SystemFontGroupList system;
    QScopedPointer<UserFontGroupList> user;

private:
    QHash<int, QSharedPointer<QSet<int>>> m_heard;
};
