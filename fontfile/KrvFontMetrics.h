#pragma once

#include "fontfile/WrappedLine.h"

#include <QList>
#include <QMetaType>
#include <QRect>
#include <QString>

class KrvFontFile;
class QDataStream;

// Measures glyphs and texts of one open font file, in whole pixels at the size set on it, and breaks texts into lines.
// A light value over a KrvFontFile that must outlive it and belong to the calling thread; with a closed file or on
// another thread every answer is 0 or a null rectangle. Rectangles have y growing downwards and the baseline at y = 0.
// Metrics that a broken font exaggerates are clamped, so sums of them never overflow.
class KrvFontMetrics
{
public:
    // What makes previews of different fonts line up: factors of the nominal pixel size. -1 in any of them, or a value
    // that is not finite, means "no correction"; such a value is ignored wherever it is applied.
    struct MetricsCorrection
    {
        double c0 = -1.0; // size handed to the rasteriser
        double c1 = -1.0; // width of a character cell
        double c2 = -1.0; // ascent

        bool isValid() const;
        QString toString() const; // "1.1000E+00;6.0000E-01;8.0000E-01"
        // Anything but three parts between ";" gives the invalid correction; a part that is no number counts as 0.
        static MetricsCorrection fromString(const QString& text);
    };

    explicit KrvFontMetrics(KrvFontFile* font);

    int ascent() const;
    int descent() const;
    int lineSpacing() const;

    int advance(unsigned int glyph, unsigned int nextGlyph = 0) const;
    int leftBearing(unsigned int glyph) const;
    int leftBearing(QChar c) const;
    int rightBearing(unsigned int glyph) const;
    int glyphWidth(unsigned int glyph) const;
    QRect glyphBox(unsigned int glyph) const;
    QRect glyphBox(QChar c) const;
    QRect inkBox(unsigned int glyph) const;

    int textWidth(const QString& text, int length = -1) const;
    QRect lineBox(const QString& line) const;
    QRect textBox(const QString& text) const;
    QRect inkTextBox(const QString& line) const;

    // Every line holds at least one word, so a word wider than maxWidth overflows; blank lines vanish. The caller owns
    // the lines.
    QList<WrappedLine*> wrapText(const QString& text, int maxWidth) const;

private:
    KrvFontFile* m_font;
};

Q_DECLARE_METATYPE(KrvFontMetrics::MetricsCorrection)

QDataStream& operator<<(QDataStream& stream, const KrvFontMetrics::MetricsCorrection& correction);
QDataStream& operator>>(QDataStream& stream, KrvFontMetrics::MetricsCorrection& correction);
