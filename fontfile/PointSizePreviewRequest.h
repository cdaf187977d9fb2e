#pragma once

#include <QRgb>
#include <QString>

// What KrvFontPainter::renderPreview() draws; the margins count only when extendMargins is set.
struct PointSizePreviewRequest
{
    int dpi = -1; // -1: the screen's
    int pointSize = 12;
    QString text;
    bool extendMargins = false;
    int marginLeft = 0;
    int marginRight = 0;
    int marginTop = 0;
    int marginBottom = 0;
    QRgb color = 0xFF000000;
};
