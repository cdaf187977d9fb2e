#pragma once

#include "fontfile/PaintDeviceWrapper.h"

class QPainter;

// Draws on a QPainter (not owned): the pen gives the colour, the coverage the opacity.
class KrvFontPainter::PainterPaintDevice : public KrvFontPainter::PaintDeviceWrapper
{
public:
    explicit PainterPaintDevice(QPainter* painter);

    void save() override;
    void restore() override;
    void translate(int dx, int dy) override;
    void translate(const QPoint& offset) override;
    void drawSpan(int x, int y, int length, int coverage) override;
    void drawImage(const QPoint& position, const QImage& image) override;
    void drawPath(int x, int y, const QPainterPath& path) override;

private:
    QPainter* m_painter;
};
