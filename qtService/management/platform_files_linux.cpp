#include "qtService/management/platform_files.h"

#include <QFile>

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

} // namespace kerval::platform
