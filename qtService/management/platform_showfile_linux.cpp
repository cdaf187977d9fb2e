#include "qtService/management/platform_showfile.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDesktopServices>
#include <QFileInfo>
#include <QUrl>

namespace krv::platform {

namespace {

void openFolder(const QString& filePath, const std::function<void()>& onFailure)
{
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(filePath).absolutePath())) && onFailure)
        onFailure();
}

} // namespace

void showInFileManager(const QString& filePath, const std::function<void()>& onFailure)
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        openFolder(filePath, onFailure);
        return;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    const QString url = QUrl::fromLocalFile(QFileInfo(filePath).absoluteFilePath()).toString(QUrl::FullyEncoded);
    call << QStringList{url} << QString();
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call));
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [watcher, filePath, onFailure] {
        if (watcher->isError())
            openFolder(filePath, onFailure);
        watcher->deleteLater();
    });
}

} // namespace krv::platform
