#pragma once

#include <QRect>

namespace ui {

// The place that a window is to have, or the nearest to it where all of it can be seen: a screen may have gone or
// shrunk since the place was noted. There is room for a title bar above it. A window may span screens.
QRect onScreen(const QRect& geometry);

} // namespace ui
