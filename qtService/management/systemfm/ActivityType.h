#pragma once

#include <QMetaType>

namespace kerval::systemfm {

// How a font file is switched on; the numbers are stored in records and travel over HTTP.
enum ActivityType
{
    Inactive = 0,
    TemporarilyActive = 1, // until the logon session ends
    PermanentlyActive = 2,
};

} // namespace kerval::systemfm

Q_DECLARE_METATYPE(kerval::systemfm::ActivityType)
