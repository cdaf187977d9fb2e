#pragma once

#include "fontfile/KrvFontMetrics.h"

#include <QMargins>
#include <QRgb>
#include <QString>

// What KrvFontPainter::renderPixelPreview() draws; the margins count only when extendMargins is set.
struct PixelSizePreviewRequest
{
    int pixelSize = 80;
    QString text;
    bool ownScript = false; // a text whose letters the font lacks gives way to one in a script that it has
    bool extendMargins = false;
    KrvFontMetrics::MetricsCorrection correction;
    QMargins margins;
    QRgb color = 0xFF000000;
};
