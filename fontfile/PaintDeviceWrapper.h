#pragma once

#include "fontfile/KrvFontPainter.h"

class QImage;
class QPainterPath;

// What the font painter draws on. Coverage runs from 0 to 255.
class KrvFontPainter::PaintDeviceWrapper
{
public:
    virtual ~PaintDeviceWrapper() = default;

    virtual void save() = 0;
    virtual void restore() = 0;
    virtual void translate(int dx, int dy) = 0;
    virtual void translate(const QPoint& offset) = 0;
    virtual void drawSpan(int x, int y, int length, int coverage) = 0;
    virtual void drawImage(const QPoint& position, const QImage& image) = 0;
    virtual void drawPath(int x, int y, const QPainterPath& path) = 0;
};
