#pragma once

#include "qtService/management/RecentDatedFontsGroup.h"

class RecentlyDeactivatedFontsGroup : public RecentDatedFontsGroup
{
    Q_OBJECT

public:
    RecentlyDeactivatedFontsGroup(const QSharedPointer<FontCollectionInterface>& source, int maxCount);
};
