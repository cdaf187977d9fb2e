#include "qtService/app/core/SettingsFolders.h"

#include "qtService/app/core/platform_folders.h"

#include <QDebug>
#include <QDir>

namespace krv {

namespace {

QString ensureFolder(const QString& base, const QString& subFolder)
{
    const QString trimmed = base.trimmed();
    if (trimmed.isEmpty())
        return QString();
    const QString folder = QDir::fromNativeSeparators(trimmed + subFolder);
    return QDir().mkpath(folder) ? folder : QString();
}

} // namespace

QString userSettingsFolder()
{
    return ensureFolder(platform::userDataBase(), QStringLiteral("/.kerval/"));
}

QString commonSettingsFolder()
{
    const QString base = platform::commonDataBase();
    const QString subFolder = QStringLiteral("/Kerval/");
    qDebug() << "krv::commonSettingsFolder"
             << "home path is:" << base;
    if (!QDir(base + subFolder).exists())
        qDebug() << "krv::commonSettingsFolder"
                 << "path does not exist, creating...";
    const QString folder = ensureFolder(base, subFolder);
    if (folder.isEmpty())
        qDebug() << "krv::commonSettingsFolder"
                 << "path does not exist, returning NULL";
    else
        qDebug() << "krv::commonSettingsFolder"
                 << "returning" << folder;
    return folder;
}

} // namespace krv
