#include "qtService/app/core/Version.h"

#include <QStringList>

namespace krv {

QString versionString()
{
    return QStringLiteral(KERVAL_VERSION);
}

int versionNumber(const QString& version)
{
    const QStringList parts = version.trimmed().section(QLatin1Char(' '), 0, 0).split(QLatin1Char('.'));
    return (parts.value(0).toInt() * 100 + parts.value(1).toInt()) * 100 + parts.value(2).toInt();
}

int versionNumber()
{
    return versionNumber(versionString());
}

} // namespace krv
