#pragma once

#include "qtService/management/FontGroupList.h"

// The standard groups. Their ids are part of the external interface.
class SystemFontGroupList : public FontGroupList
{
    Q_OBJECT

public:
    enum GroupId
    {
        AllFonts = -100,
        ActiveFonts = -101,
        InactiveFonts = -102,
        SystemFonts = -103,
        RecentlyAddedFonts = -104,
        DuplicateFonts = -106,
        RecentlyActivatedFonts = -107,
        RecentlyDeactivatedFonts = -108,
        HiddenFonts = -110
    };
    Q_ENUM(GroupId)
};
