#include "qtService/management/systemfm/SystemFontDescriptor.h"

#include <QHash>

namespace kerval::systemfm {

namespace {

#ifdef Q_OS_WIN
constexpr Qt::CaseSensitivity pathCase = Qt::CaseInsensitive;
#else
constexpr Qt::CaseSensitivity pathCase = Qt::CaseSensitive;
#endif

} // namespace

SystemFontDescriptor::SystemFontDescriptor(const QString& fileName, ActivityType activityType)
    : fileName(fileName)
    , activityType(activityType)
{
}

bool operator==(const SystemFontDescriptor& left, const SystemFontDescriptor& right)
{
    return left.fontName == right.fontName && left.fileName.compare(right.fileName, pathCase) == 0;
}

bool operator!=(const SystemFontDescriptor& left, const SystemFontDescriptor& right)
{
    return !(left == right);
}

uint qHash(const SystemFontDescriptor& descriptor, uint seed)
{
    const QString path = pathCase == Qt::CaseSensitive ? descriptor.fileName : descriptor.fileName.toCaseFolded();
    return ::qHash(QString(path + QLatin1String("::") + descriptor.fontName), seed);
}

} // namespace kerval::systemfm
