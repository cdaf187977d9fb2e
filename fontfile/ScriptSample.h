#pragma once

#include <QString>

class KrvFontFile;

// What shows a font: the text itself, if the font draws at least half of its letters, else a text in a script of the
// font's own, else the first letters or signs it has. An open font; its size does not matter.
QString scriptSample(const KrvFontFile& font, const QString& text);
