#include "qtService/ui/window/WindowIcons.h"

namespace ui {

QIcon icon(const QString& base)
{
    QIcon icon;
    for (const int size : {48, 32, 24, 16})
        icon.addFile(QStringLiteral("%1%2%3x%3.png").arg(base, QString()).arg(size), QSize(size, size));
    return icon;
}

} // namespace ui
