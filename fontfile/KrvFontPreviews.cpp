// The complete renderers of KrvFontPainter.
#include "fontfile/Indexed8PaintDevice.h"
#include "fontfile/KrvFontFile.h"
#include "fontfile/KrvFontMetrics.h"
#include "fontfile/KrvFontPainter.h"
#include "fontfile/ScriptSample.h"

#include <QFont>
#include <QFontMetrics>
#include <QImage>
#include <QMutex>
#include <QPainter>
#include <QSvgRenderer>
#include <QTextOption>

namespace {

// The drawing board of a preview is a multiple of what the font's metrics ask for, and those are the font's own claims.
constexpr double maxBoardPixels = 256.0 * 1024 * 1024;

QImage makeBoard(double width, double height, QRgb color)
{
    if (width < 1 || height < 1 || width * height > maxBoardPixels)
        return QImage();
    QImage board(QSize(qRound(width), qRound(height)), QImage::Format_Indexed8);
    if (board.isNull())
        return board;
    board.setColorTable(KrvFontPainter::colorTable(color));
    board.fill(0);
    return board;
}

QRect drawOnBoard(QImage* board, KrvFontFile* font, int flags, const QString& text, QRgb color)
{
    QRect drawn;
    QPainter inactive;
    KrvFontPainter::Indexed8PaintDevice device(board);
    KrvFontPainter(&inactive, font).drawText(device, board->rect(), flags, text, &drawn);
    board->setColorTable(KrvFontPainter::colorTable(color));
    return drawn;
}

// Null for an empty rectangle (which QImage::copy() would take for the whole image) and beyond the board's own limit.
QImage crop(const QImage& board, const QRect& rect)
{
    return rect.isEmpty() || double(rect.width()) * rect.height() > maxBoardPixels ? QImage() : board.copy(rect);
}

} // namespace

QVector<QRgb> KrvFontPainter::colorTable(QRgb color)
{
    QVector<QRgb> table(256);
    for (int i = 0; i < table.size(); ++i)
        table[i] = qRgba(qRed(color), qGreen(color), qBlue(color), i);
    return table;
}

bool KrvFontPainter::renderPreview(const QString& fileName, const PointSizePreviewRequest& request, QImage* out,
                                   int faceIndex, void* reserved, int flags, bool watermark, double watermarkOpacity)
{
    KrvFontFile font(fileName);
    return font.open(faceIndex) && renderPreview(font, request, out, reserved, flags, watermark, watermarkOpacity);
}

bool KrvFontPainter::renderPreview(KrvFontFile& font, const PointSizePreviewRequest& request, QImage* out, void*,
                                   int flags, bool watermark, double watermarkOpacity)
{
    if (!font.isOpen())
        return false;
    font.setPointSize(request.pointSize, request.dpi);
    const KrvFontMetrics metrics(&font);
    QRect box = metrics.textBox(request.text);
    if (box.top() == 0 && box.bottom() == 0)
        box = metrics.inkTextBox(request.text);
    QImage board = makeBoard(2.0 * box.width(), 2.0 * box.height(), request.color);
    if (board.isNull())
        return false;
    QRect drawn = drawOnBoard(&board, &font, flags, request.text, request.color);
    if (drawn.width() == 0)
        return false;
    if (request.extendMargins)
        drawn.adjust(-request.marginLeft, -request.marginTop, request.marginRight, request.marginBottom);
    *out = crop(board, drawn);
    if (watermark)
        drawWatermark(out, watermarkOpacity);
    return !out->isNull();
}

bool KrvFontPainter::renderPixelPreview(const QString& fileName, const PixelSizePreviewRequest& request, QImage* out,
                                        int faceIndex)
{
    KrvFontFile font(fileName);
    if (!font.open(faceIndex))
        return false;
    font.applyMetricsCorrection(request.correction);
    font.setPixelSize(request.pixelSize);
    const QString text = request.ownScript ? scriptSample(font, request.text) : request.text;
    const double width = 2.0 * KrvFontMetrics(&font).textWidth(text);
    const double height = int(request.pixelSize * 1.5);
    QImage board = makeBoard(width, height, request.color);
    if (board.isNull() && width * height > maxBoardPixels)
        return false;
    QRect drawn;
    if (!board.isNull())
        drawn = drawOnBoard(&board, &font, Qt::AlignLeft | Qt::AlignVCenter, text, request.color);
    if (request.extendMargins)
        drawn += request.margins;
    *out = crop(board, drawn);
    return true;
}

bool KrvFontPainter::renderAtHeight(const QString& fileName, PixelSizePreviewRequest request, int height, QImage* out,
                                    int faceIndex)
{
    request.pixelSize = qMax(1, qRound(height / 1.5)); // the image is one and a half times as high
    QImage image;
    if (!renderPixelPreview(fileName, request, &image, faceIndex))
        return false;
    if (image.isNull()) {
        image = QImage(1, height, QImage::Format_ARGB32);
        image.fill(Qt::transparent);
    } else if (image.height() > height) {
        image = image.scaledToHeight(height, Qt::SmoothTransformation);
    } else if (image.height() < height) {
        image = image.copy(0, -((height - image.height()) / 2), image.width(), height);
    }
    *out = image;
    return !image.isNull();
}

bool KrvFontPainter::renderGlyph(KrvFontFile& font, unsigned int glyph, QRgb color, QImage* out)
{
    const QRect ink = glyph ? KrvFontMetrics(&font).inkBox(glyph) : QRect();
    // The device drops spans that would not fit a row before it moves them: the board reaches from the origin.
    QImage board = makeBoard(qMax(ink.width(), ink.right() + 1), ink.height(), color);
    if (board.isNull())
        return false;
    QPainter inactive;
    Indexed8PaintDevice device(&board);
    device.translate(-ink.topLeft());
    KrvFontPainter(&inactive, &font).drawOutline(device, glyph);
    board.setColorTable(colorTable(color));
    *out = board.copy(0, 0, ink.width(), ink.height());
    return true;
}

bool KrvFontPainter::renderWithSystemFont(QFont font, const QColor& color, const QString& text, QImage* out,
                                          bool watermark, double watermarkOpacity)
{
    const QString spaced = text + QStringLiteral("  ");
    const QSize size = QFontMetrics(font).boundingRect(spaced).size();
    *out = QImage(size, QImage::Format_ARGB32);
    if (out->isNull())
        return false;
    out->fill(Qt::transparent);
    {
        QPainter painter(out);
        painter.setPen(color);
        painter.setFont(font);
        painter.drawText(QRectF(QRect(QPoint(0, 0), size)), spaced, QTextOption());
    }
    if (watermark)
        drawWatermark(out, watermarkOpacity);
    return true;
}

bool KrvFontPainter::drawWatermark(QImage* image, double opacity)
{
    // One drawing for all threads; rendering changes the renderer too, so it stays locked throughout.
    static QMutex mutex;
    static QSvgRenderer* const renderer = new QSvgRenderer;
    QMutexLocker locker(&mutex);
    if (!renderer->isValid())
        renderer->load(QStringLiteral(":/krvfont/watermark.svg"));
    if (!renderer->isValid() || image->isNull())
        return false;
    if (image->format() == QImage::Format_Indexed8)
        *image = image->convertToFormat(QImage::Format_ARGB32);
    QPainter painter(image);
    painter.save();
    painter.setOpacity(opacity);
    renderer->render(&painter, QRectF(image->rect()));
    painter.restore();
    return true;
}
