#include "fontfile/PainterPaintDevice.h"

#include <QImage>
#include <QLine>
#include <QPainter>

KrvFontPainter::PainterPaintDevice::PainterPaintDevice(QPainter* painter)
    : m_painter(painter)
{
}

void KrvFontPainter::PainterPaintDevice::save()
{
    m_painter->save();
}

void KrvFontPainter::PainterPaintDevice::restore()
{
    m_painter->restore();
}

void KrvFontPainter::PainterPaintDevice::translate(int dx, int dy)
{
    m_painter->translate(QPointF(dx, dy));
}

void KrvFontPainter::PainterPaintDevice::translate(const QPoint& offset)
{
    m_painter->translate(QPointF(offset));
}

void KrvFontPainter::PainterPaintDevice::drawSpan(int x, int y, int length, int coverage)
{
    m_painter->setOpacity(coverage / 255.0);
    if (length > 1) {
        const QLine line(x, y, x + length - 1, y);
        m_painter->drawLines(&line, 1);
    } else {
        const QPoint point(x, y);
        m_painter->drawPoints(&point, 1);
    }
}

void KrvFontPainter::PainterPaintDevice::drawImage(const QPoint& position, const QImage& image)
{
    m_painter->drawImage(QPointF(position), image);
}

void KrvFontPainter::PainterPaintDevice::drawPath(int, int, const QPainterPath& path)
{
    m_painter->drawPath(path);
}
