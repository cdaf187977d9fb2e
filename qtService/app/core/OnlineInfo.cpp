#include "qtService/app/core/OnlineInfo.h"

#include <QFile>
#include <QFileInfo>
#include <QSettings>

namespace krv {

namespace {

QString sideFile(const QString& path)
{
    return path + QStringLiteral(".onlineinfo");
}

} // namespace

bool writeOnlineInfo(const QString& path, int onlineId, const QString& onlineSource, const QDateTime& downloadedDate,
                     bool purchased)
{
    QSettings file(sideFile(path), QSettings::IniFormat);
    file.setIniCodec("UTF-8");
    file.setValue(QStringLiteral("OnlineId"), onlineId);
    file.setValue(QStringLiteral("OnlineSource"), onlineSource);
    file.setValue(QStringLiteral("DownloadedDate"), downloadedDate);
    file.setValue(QStringLiteral("Purchased"), purchased);
    file.sync();
    return file.status() == QSettings::NoError && QFileInfo(sideFile(path)).size() > 0;
}

bool removeOnlineInfo(const QString& path)
{
    return QFile::remove(sideFile(path));
}

} // namespace krv
