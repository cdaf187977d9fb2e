#pragma once

#include "qtService/management/RecentDatedFontsGroup.h"

class RecentlyActivatedFontsGroup : public RecentDatedFontsGroup
{
    Q_OBJECT

public:
    RecentlyActivatedFontsGroup(const QSharedPointer<FontCollectionInterface>& source, int maxCount);
};
