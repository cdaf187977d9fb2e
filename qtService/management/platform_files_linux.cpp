#include "qtService/management/platform_files.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <dirent.h>
#include <sys/stat.h>

namespace kerval::platform {

FileId fileId(const QString& path)
{
    struct stat status;
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return {0, 0};
    return {quint64(status.st_dev), quint64(status.st_ino)};
}

QStringList unreadableNames(const QString& folder)
{
    QStringList names;
    DIR* directory = ::opendir(QFile::encodeName(folder).constData());
    if (!directory)
        return names;
    while (const dirent* entry = ::readdir(directory)) {
        const QByteArray bytes(entry->d_name);
        const QString name = QFile::decodeName(bytes);
        if (QFile::encodeName(name) != bytes)
            names.append(name);
    }
    ::closedir(directory);
    return names;
}

QStringList ownFontFolders()
{
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    const QString runtime = QString::fromLocal8Bit(qgetenv("XDG_RUNTIME_DIR"));
    QStringList folders;
    const QStringList fontFolders = {data + QStringLiteral("/fonts"), QDir::homePath() + QStringLiteral("/.fonts")};
    for (const QString& fonts : fontFolders)
        folders << fonts + QStringLiteral("/kerval") << fonts + QStringLiteral("/kerval-session");
    if (!runtime.isEmpty())
        folders << runtime + QStringLiteral("/kerval/fonts");
    return folders;
}

} // namespace kerval::platform
