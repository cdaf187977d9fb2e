#include "qtService/ui/messages/OpenOutside.h"

#include "qtService/management/platform_showfile.h"
#include "qtService/ui/messages/KrvMessage.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QUrl>

namespace ui {

void openAddress(const QUrl& url)
{
    if (!QDesktopServices::openUrl(url))
        KrvMessage::instance()->warning(
            QCoreApplication::translate("OpenOutside", "No program of this system opens the address\n%1")
                .arg(url.toDisplayString().toHtmlEscaped()));
}

void showFile(const QString& filePath)
{
    krv::platform::showInFileManager(filePath, [filePath] {
        KrvMessage::instance()->warning(
            QCoreApplication::translate("OpenOutside", "No file manager of this system shows the file\n%1")
                .arg(QDir::toNativeSeparators(filePath).toHtmlEscaped()));
    });
}

} // namespace ui
