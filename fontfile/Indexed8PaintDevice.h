#pragma once

#include "fontfile/PaintDeviceWrapper.h"

#include <QTransform>
#include <QVector>

// Draws coverage into an 8-bit indexed image (not owned): the index of a pixel is its coverage. A pixel that glyphs
// share saturates, so that overlaps never look thinner than either glyph. The image's colour table is replaced by black
// with alpha = index; who wants another colour sets it after drawing.
class KrvFontPainter::Indexed8PaintDevice : public KrvFontPainter::PaintDeviceWrapper
{
public:
    explicit Indexed8PaintDevice(QImage* image);

    void save() override;
    void restore() override;
    void translate(int dx, int dy) override;
    void translate(const QPoint& offset) override;
    void drawSpan(int x, int y, int length, int coverage) override;
    void drawImage(const QPoint& position, const QImage& image) override;
    void drawPath(int x, int y, const QPainterPath& path) override;

private:
    QImage* m_image;
    QTransform m_matrix;
    QVector<QTransform> m_matrixStack;
};
