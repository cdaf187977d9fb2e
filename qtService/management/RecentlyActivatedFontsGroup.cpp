#include "qtService/management/RecentlyActivatedFontsGroup.h"

#include "qtService/database/StaticFont.h"

RecentlyActivatedFontsGroup::RecentlyActivatedFontsGroup(const QSharedPointer<FontCollectionInterface>& source,
                                                         int maxCount)
    : RecentDatedFontsGroup(source, tr("Recently Activated"), &fms::StaticFont::dateActivated, maxCount)
{
}
