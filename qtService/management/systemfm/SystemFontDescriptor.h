#pragma once

#include "qtService/management/systemfm/ActivityType.h"

#include <QList>
#include <QString>

namespace kerval::systemfm {

// A font file as the operating system has it. fileName is a full path with native separators; it is lower case on
// Windows and keeps its case where file systems tell the cases apart. The lists of active fonts fill only fileName and
// activityType.
//
// Two descriptors are equal when they name the same font, however active it is: a set of them answers "is it there",
// and the activity of what it finds is read from the element.
class SystemFontDescriptor
{
public:
    SystemFontDescriptor() = default;
    explicit SystemFontDescriptor(const QString& fileName, ActivityType activityType = Inactive);

    QString fileName;
    QString fontName;
    QString registryName;
    ActivityType activityType = Inactive;
};

bool operator==(const SystemFontDescriptor& left, const SystemFontDescriptor& right);
bool operator!=(const SystemFontDescriptor& left, const SystemFontDescriptor& right);
uint qHash(const SystemFontDescriptor& descriptor, uint seed = 0);

} // namespace kerval::systemfm

Q_DECLARE_TYPEINFO(kerval::systemfm::SystemFontDescriptor, Q_MOVABLE_TYPE);
