#pragma once

#include "fontfile/PixelSizePreviewRequest.h"
#include "fontfile/PointSizePreviewRequest.h"

#include <QPoint>
#include <QRect>
#include <QRgb>
#include <QString>
#include <QVector>

class KrvFontFile;
class QColor;
class QFont;
class QImage;
class QPainter;

// Draws text and single characters of a font file with FreeType's rasteriser, span by span, without the system's font
// machinery. A light value: font file and painter are not owned, and both belong to the calling thread. The painter may
// be inactive when only a paint device of one's own is drawn on.
//
// The static renderers make complete previews and may run on any thread. They answer false (and leave the image alone)
// when the font cannot be opened, or when the picture that a font asks for would not fit a sane amount of memory.
class KrvFontPainter
{
public:
    class PaintDeviceWrapper;
    class Indexed8PaintDevice;
    class PainterPaintDevice;

    KrvFontPainter(QPainter* painter, KrvFontFile* font);

    // Text of one or more lines, wrapped to the rectangle's width; drawnRect (may be null) receives the pixels drawn.
    void drawText(PaintDeviceWrapper& device, const QRect& rect, int flags, const QString& text, QRect* drawnRect);
    void drawText(const QRect& rect, int flags, const QString& text, QRect* drawnRect);
    void drawCharacter(const QRect& rect, int flags, QChar ch);
    void drawCharacterAt(const QPoint& baselineOrigin, QChar ch);
    // The same for one glyph, however it was found: of a character above U+FFFF, for example.
    void drawGlyph(const QRect& rect, int flags, unsigned int glyph);
    void drawGlyphAt(const QPoint& baselineOrigin, unsigned int glyph);

    // An indexed image, cropped to what was drawn (32 bits with a watermark). False also when a text that has a size
    // drew nothing.
    static bool renderPreview(const QString& fileName, const PointSizePreviewRequest& request, QImage* out,
                              int faceIndex, void* reserved, int flags, bool watermark, double watermarkOpacity);
    static bool renderPreview(KrvFontFile& font, const PointSizePreviewRequest& request, QImage* out, void* reserved,
                              int flags, bool watermark, double watermarkOpacity);
    // One line's height, cropped to what was drawn. True with a null image when nothing was.
    static bool renderPixelPreview(const QString& fileName, const PixelSizePreviewRequest& request, QImage* out,
                                   int faceIndex);
    // The same in an image of exactly this height, the text in its middle: one transparent column for a text without
    // ink. The request's size does not count.
    static bool renderAtHeight(const QString& fileName, PixelSizePreviewRequest request, int height, QImage* out,
                               int faceIndex);
    // The ink of one glyph at the size set on the font, in an indexed image just as large. False when it has none.
    static bool renderGlyph(KrvFontFile& font, unsigned int glyph, QRgb color, QImage* out);
    static bool renderWithSystemFont(QFont font, const QColor& color, const QString& text, QImage* out, bool watermark,
                                     double watermarkOpacity);
    static bool drawWatermark(QImage* image, double opacity);
    // Entry i: the colour with alpha i.
    static QVector<QRgb> colorTable(QRgb color);

private:
    void drawOutline(PaintDeviceWrapper& device, unsigned int glyph);
    void drawLine(PaintDeviceWrapper& device, const QPoint& baselineOrigin, const QString& text, QRect* drawnRect);

    KrvFontFile* m_font;
    QPainter* m_painter;
};
