#pragma once

class QPalette;

namespace ui {

// Whether a palette shows light text on a dark ground; drawings and style sheets come in both kinds.
bool isDark(const QPalette& palette);

} // namespace ui
