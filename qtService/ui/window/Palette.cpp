#include "qtService/ui/window/Palette.h"

#include <QPalette>

namespace ui {

bool isDark(const QPalette& palette)
{
    return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

} // namespace ui
