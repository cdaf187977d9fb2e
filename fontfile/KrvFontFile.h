#pragma once

#include "fontfile/KrvFontMetrics.h"
#include "fontfile/UnicodeBlock.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QPair>
#include <QString>
#include <QVector>

class KrvFontFilePrivate;
class KrvShapingFont;

// FreeType's handles by their own names, so that users of this header need not have the library.
struct FT_FaceRec_;
struct FT_GlyphSlotRec_;
struct FT_Outline_;
struct FT_Span_;
typedef struct FT_FaceRec_* FT_Face;
typedef struct FT_GlyphSlotRec_* FT_GlyphSlot;

// One face of one font file: the only way this program looks into a font.
//
// The object belongs to the thread that made it. On any other thread every question is answered as if no face were
// open: empty texts and lists, 0, null. Rendering code makes one on its stack, uses it and drops it; make, use and
// destroy it on one thread (a face that is still open when another thread destroys the object stays open).
//
// Font data comes from strangers. FreeType's checks are complemented here: composite glyphs that would multiply without
// end, outlines that would keep the rasteriser busy for minutes and name tables that would fill the memory are refused,
// and a face that keeps using up time gets no more glyphs until its size is set again.
class KrvFontFile : public QObject
{
    Q_OBJECT

public:
    enum Encoding
    {
        EncodingNone = 0,
        EncodingMsSymbol = 1,
        EncodingUnicode = 2,
        EncodingSjis = 3,
        EncodingGb2312 = 4,
        EncodingBig5 = 5,
        EncodingWansung = 6,
        EncodingJohab = 7,
        EncodingAdobeStandard = 8,
        EncodingAdobeExpert = 9,
        EncodingAdobeCustom = 10,
        EncodingAdobeLatin1 = 11,
        EncodingOldLatin2 = 12,
        EncodingAppleRoman = 13
    };
    Q_ENUM(Encoding)
    enum Platform
    {
        PlatformUnknown = 0,
        PlatformMacintosh = 1,
        PlatformIso = 2,
        PlatformMicrosoft = 3,
        PlatformCustom = 4,
        PlatformAdobe = 5
    };
    Q_ENUM(Platform)
    // The kind of a file by its extension.
    enum Format
    {
        FormatUnknown = 0,
        FormatTtf = 1,
        FormatTtc = 2,
        FormatOtf = 3,
        FormatPfm = 4,
        FormatPfb = 5,
        FormatAfm = 6,
        FormatDfont = 7,
        FormatMbn = 8
    };
    Q_ENUM(Format)
    // The coarser grouping that callers outside rendering use.
    enum FileType
    {
        FileTypeUnknown = 0,
        FileTypeTrueType = 1,
        FileTypeTrueTypeCollection = 2,
        FileTypeOpenType = 3,
        FileTypeType1 = 4,
        FileTypeDfont = 5
    };
    Q_ENUM(FileType)

    struct CharMap
    {
        Encoding encoding = EncodingNone;
        Platform platform = PlatformUnknown;
        int index = -1; // position in the face's list; -1: none
    };

    explicit KrvFontFile(const QString& fileName, QObject* parent = nullptr);
    ~KrvFontFile() override;

    // Opens nothing of a ".pfb" file: Type 1 outlines are reached through the ".pfm" beside them.
    bool open(int faceIndex);
    bool setFile(const QString& fileName, int faceIndex);
    void close();
    bool isOpen() const;
    QString fileName() const;
    int faceCount() const;
    FT_Face face() const;

    // A missing platform gives way to another one unless exactMatch is set; a missing language always does.
    QString sfntName(int nameId, int platformId, int languageId, bool exactMatch) const;
    QString familyName(bool legacyFamily = false) const;
    QString postScriptName() const;

    QList<CharMap> charMaps() const;
    CharMap currentCharMap() const;
    bool selectCharMap(const CharMap& map); // by encoding: of two maps with the same one FreeType takes its own choice
    unsigned int glyphIndex(QChar c) const;
    unsigned int glyphIndexOf(uint codePoint) const;

    // Covered characters in ascending order, those above U+FFFF truncated to 16 bits.
    QList<ushort> characters() const;
    QList<ushort> charactersInBlock(int blockIndex) const; // -1: all
    // The covered characters above U+FFFF as they are, in ascending order; read anew each time.
    QVector<uint> supplementaryCharacters() const;
    QHash<int, QPair<int, int>>
    supportedBlocks() const; // block index -> (count, position of the first in characters())
    static int unicodeBlockCount();
    static UnicodeBlock unicodeBlock(int index);
    static QList<UnicodeBlock> unicodeBlocks();

    // The face's glyph slot with the glyph in it, hinted lightly; null when it cannot be loaded. Unless forced, a glyph
    // that was asked for last is not loaded again. The slot is good until the next call that loads or measures.
    FT_GlyphSlot loadGlyph(unsigned int glyphIndex, bool force = false);
    FT_GlyphSlot loadCharacter(ushort c, bool force = false);

    bool setPixelSize(int pixels);
    int pixelSize() const; // the nominal size, whatever correction is in force
    bool setPointSize(int points, int dpi = -1);
    void applyMetricsCorrection(const KrvFontMetrics::MetricsCorrection& correction);
    bool hasMetricsCorrection() const;
    KrvFontMetrics::MetricsCorrection metricsCorrection() const;
    int winAscent() const;
    int winDescent() const;

    // What layout and painter need of a face.
    using SpanFunction = void (*)(int y, int count, const FT_Span_* spans, void* user);
    int hintedAdvance(unsigned int glyph) const; // whole pixels, hinted for the full grid
    bool renderOutline(FT_Outline_* outline, SpanFunction spans, void* user) const;
    KrvShapingFont* shapingFont() const; // at the current size; null when not open

    static Format formatFromFileName(const QString& path);
    static QString extensionForFormat(Format format);
    static FileType fileTypeFromFileName(const QString& path);
    static QString companionFileName(const QString& path, Format format);
    static bool companionFileExists(const QString& path, Format format);

private:
    KrvFontFilePrivate* m_private;
};
