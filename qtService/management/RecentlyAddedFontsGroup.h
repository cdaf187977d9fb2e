#pragma once

#include "qtService/management/FontGroup.h"

// The `maxCount` newest fonts of the source, newest first. A font added while the program runs counts as the newest,
// whatever its stored date; the dates order only what was there at construction and fonts added together.
class RecentlyAddedFontsGroup : public FontGroup
{
    Q_OBJECT

public:
    RecentlyAddedFontsGroup(const QSharedPointer<FontCollectionInterface>& source, int maxCount);

protected slots:
    void onFontsAddedToSource(const QList<int>& fontIdList) override;
    void onFontsRemovedFromSource(const QList<int>& fontIdList) override;
    void onSourceFontsChanged(const QList<int>& fontIdList) override;

private:
    QList<int> newest() const;

    FontMembers m_sortedIds; // every candidate, oldest first: new ones are appended
    int m_maxCount;
};
