#pragma once

#include <QImage>

class QPalette;

namespace ui {

// Images of glyphs are black on nothing; in another colour they suit dark palettes and selections.
QImage tinted(QImage image, const QColor& color);

// "lightgray" on a light ground, something as quiet on a dark one.
QColor gridColor(const QPalette& palette);

} // namespace ui
