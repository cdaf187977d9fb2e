#include "fontfile/Indexed8PaintDevice.h"

#include <QImage>

KrvFontPainter::Indexed8PaintDevice::Indexed8PaintDevice(QImage* image)
    : m_image(image)
{
    m_image->setColorTable(colorTable(qRgb(0, 0, 0)));
}

void KrvFontPainter::Indexed8PaintDevice::save()
{
    m_matrixStack.append(m_matrix);
}

void KrvFontPainter::Indexed8PaintDevice::restore()
{
    m_matrix = m_matrixStack.takeLast();
}

void KrvFontPainter::Indexed8PaintDevice::translate(int dx, int dy)
{
    m_matrix.translate(dx, dy);
}

void KrvFontPainter::Indexed8PaintDevice::translate(const QPoint& offset)
{
    translate(offset.x(), offset.y());
}

void KrvFontPainter::Indexed8PaintDevice::drawSpan(int x, int y, int length, int coverage)
{
    // The length is compared before anything moves it; a span that would not fit a row from its own x is dropped whole.
    if (length <= 0 || x + length - 1 >= m_image->bytesPerLine())
        return;
    const qint64 row = qint64(y) + qRound64(m_matrix.dy());
    const qint64 from = qint64(x) + qRound64(m_matrix.dx());
    if (row < 0 || row >= m_image->height())
        return;
    const int first = int(qBound<qint64>(0, from, m_image->width()));
    const int end = int(qBound<qint64>(0, from + length, m_image->width()));
    uchar* pixel = m_image->scanLine(int(row)) + first;
    for (int i = first; i < end; ++i, ++pixel)
        *pixel = *pixel == 0 ? uchar(qMin(coverage, 255)) : 255;
}

void KrvFontPainter::Indexed8PaintDevice::drawImage(const QPoint& position, const QImage& image)
{
    if (image.depth() != 8)
        return;
    const QPoint origin = m_matrix.map(position);
    const QRect shared = QRect(origin, image.size()) & m_image->rect();
    for (int y = shared.top(); y <= shared.bottom(); ++y) {
        uchar* to = m_image->scanLine(y);
        const uchar* from = image.constScanLine(y - origin.y());
        for (int x = shared.left(); x <= shared.right(); ++x)
            to[x] = uchar(qMin(255, to[x] + from[x - origin.x()]));
    }
}

void KrvFontPainter::Indexed8PaintDevice::drawPath(int, int, const QPainterPath&)
{
    // Paths have no coverage to put into an indexed image.
}
