#pragma once

#include <QImage>
#include <QString>

class QPalette;

// The looks that the tabs of the details have in common.

namespace ui {

// Images of glyphs are black on nothing; in another colour they suit dark palettes and selections.
QImage tinted(QImage image, const QColor& color);

// "lightgray" on a light ground, something as quiet on a dark one.
QColor gridColor(const QPalette& palette);

// Of headers that only name their rows: text on the ground of the rows, no buttons.
QString plainHeaderStyle();

} // namespace ui
