#pragma once

#include <QIcon>

namespace ui {

// An icon of the four sizes "<base>48x48.png" down to "<base>16x16.png".
QIcon icon(const QString& base);

} // namespace ui
