#include "qtService/ui/window/ScreenGeometry.h"

#include <QApplication>
#include <QRegion>
#include <QScreen>
#include <QStyle>

namespace ui {

QRect onScreen(const QRect& geometry)
{
    QRect best;
    int shared = -1;
    // What is placed is the inside of a window; its title bar must not be what leaves the screen.
    const int titleBar = QApplication::style()->pixelMetric(QStyle::PM_TitleBarHeight);
    QRegion outside(geometry.adjusted(0, -titleBar, 0, 0));
    const QList<QScreen*> screens = QGuiApplication::screens();
    for (const QScreen* screen : screens) {
        const QRect available = screen->availableGeometry();
        const QRect common = available & geometry;
        outside -= available;
        if (common.width() * common.height() > shared) {
            shared = common.width() * common.height();
            best = available;
        }
    }
    if (outside.isEmpty() || best.isEmpty())
        return geometry;
    best.setTop(best.top() + titleBar);
    QRect moved(geometry.topLeft(), geometry.size().boundedTo(best.size()));
    moved.moveLeft(qBound(best.left(), moved.left(), best.right() + 1 - moved.width()));
    moved.moveTop(qBound(best.top(), moved.top(), best.bottom() + 1 - moved.height()));
    return moved;
}

} // namespace ui
