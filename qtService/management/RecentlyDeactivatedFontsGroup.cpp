#include "qtService/management/RecentlyDeactivatedFontsGroup.h"

#include "qtService/database/StaticFont.h"

RecentlyDeactivatedFontsGroup::RecentlyDeactivatedFontsGroup(const QSharedPointer<FontCollectionInterface>& source,
                                                             int maxCount)
    : RecentDatedFontsGroup(source, tr("Recently Deactivated"), &fms::StaticFont::dateDeactivated, maxCount)
{
}
