#pragma once

#include <QObject>
#include <QPoint>
#include <QString>
#include <QVarLengthArray>
#include <QVector>

#include <memory>

class KrvFontFile;
struct KrvShaperData;

// Shapes one line of text with one font: always one left-to-right run of the Common script, kerning on, without other
// fonts to fall back on; a missing character becomes glyph 0. Advances and offsets are whole pixels, offsets with y
// growing downwards. The font file is not owned, must be open, and belong to the calling thread; otherwise (and for an
// empty text) the layout stays empty.
class KrvGlyphLayout : public QObject
{
    Q_OBJECT

public:
    enum GlyphAttribute
    {
        ClusterStart = 0x1,
        UnsafeToBreak = 0x2
    };

    // Of one UTF-16 unit: what may begin there.
    struct CharAttributes
    {
        bool lineBreak = false;
        bool charStop = false;
        bool wordBoundary = false;
        bool whiteSpace = false;
    };

    template <class T>
    using Buffer = QVarLengthArray<T, 256>;

    explicit KrvGlyphLayout(KrvFontFile* font, QObject* parent = nullptr);
    ~KrvGlyphLayout() override;

    void setText(const QString& text);
    QString text() const;

    int glyphCount() const;
    Buffer<quint32> glyphs() const;
    Buffer<quint16> attributes() const;
    Buffer<qint32> advances() const;
    Buffer<QPoint> offsets() const;
    Buffer<quint32> logClusters() const; // for each UTF-16 unit the first glyph of its cluster
    QVector<CharAttributes> charAttributes() const;

    // Width of the glyphs of UTF-16 units from ... from + length - 1; ranges that adjoin add up to their union.
    int textWidth(int from, int length) const;

private:
    std::shared_ptr<const KrvShaperData> m_shaper; // shared with the font, which keeps the last one
    QString m_text;
    KrvFontFile* m_font;
};
