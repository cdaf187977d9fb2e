#include "qtService/app/core/platform_folders.h"

#include <QDir>
#include <QFile>

#include <unistd.h>

namespace krv::platform {

QString userDataBase()
{
    // The base directory rules of the desktop: a relative value is invalid and is to be ignored.
    const QString dataHome = QFile::decodeName(qgetenv("XDG_DATA_HOME"));
    if (QDir::isAbsolutePath(dataHome))
        return QDir::cleanPath(dataHome);
    const QString home = QFile::decodeName(qgetenv("HOME"));
    return home.isEmpty() ? QString() : home + QStringLiteral("/.local/share");
}

QString commonDataBase()
{
    return QStringLiteral("/var/lib");
}

bool isAdministrator()
{
    return ::geteuid() == 0;
}

} // namespace krv::platform
