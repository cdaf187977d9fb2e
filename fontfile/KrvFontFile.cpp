#include "fontfile/KrvFontFile.h"

#include "fontfile/KrvFontFileCache.h"
#include "fontfile/KrvFontFilePrivate.h"
#include "fontfile/KrvShapingFont.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_TRUETYPE_TABLES_H

namespace {

constexpr int nameIdFamily = 1;
constexpr int nameIdTypographicFamily = 16;
constexpr int platformMicrosoft = 3;
constexpr int languageEnglishUnitedStates = 0x409;

int winMetric(FT_Face face, FT_UShort TT_OS2::*metric)
{
    const auto* os2 = face ? static_cast<const TT_OS2*>(FT_Get_Sfnt_Table(face, FT_SFNT_OS2)) : nullptr;
    // The horizontal scale serves both directions: sizes are always square.
    return os2 ? int(FT_MulFix(os2->*metric, face->size->metrics.x_scale) >> 6) : 0;
}

} // namespace

KrvFontFile::KrvFontFile(const QString& fileName, QObject* parent)
    : QObject(parent)
    , m_private(new KrvFontFilePrivate(fileName, this))
{
}

KrvFontFile::~KrvFontFile()
{
    delete m_private;
}

bool KrvFontFile::open(int faceIndex)
{
    return m_private->open(faceIndex);
}

bool KrvFontFile::setFile(const QString& fileName, int faceIndex)
{
    delete m_private;
    m_private = new KrvFontFilePrivate(fileName, nullptr);
    return open(faceIndex);
}

void KrvFontFile::close()
{
    m_private->close();
}

bool KrvFontFile::isOpen() const
{
    return m_private->isOpen();
}

QString KrvFontFile::fileName() const
{
    return m_private->fileName();
}

int KrvFontFile::faceCount() const
{
    return isOpen() ? int(face()->num_faces) : 0;
}

FT_Face KrvFontFile::face() const
{
    return m_private->face();
}

QString KrvFontFile::sfntName(int nameId, int platformId, int languageId, bool exactMatch) const
{
    return isOpen() ? m_private->sfntName(nameId, platformId, languageId, exactMatch) : QString();
}

QString KrvFontFile::familyName(bool legacyFamily) const
{
    if (!isOpen())
        return QString();
    if (!FT_IS_SFNT(face()))
        return QString::fromLatin1(face()->family_name);
    QString name;
    if (!legacyFamily)
        name = sfntName(nameIdTypographicFamily, platformMicrosoft, languageEnglishUnitedStates, false);
    return name.isEmpty() ? sfntName(nameIdFamily, platformMicrosoft, languageEnglishUnitedStates, false) : name;
}

QString KrvFontFile::postScriptName() const
{
    return isOpen() ? QString::fromLatin1(FT_Get_Postscript_Name(face())) : QString();
}

QList<KrvFontFile::CharMap> KrvFontFile::charMaps() const
{
    return isOpen() ? m_private->cache().charMaps() : QList<CharMap>();
}

KrvFontFile::CharMap KrvFontFile::currentCharMap() const
{
    return isOpen() ? m_private->currentCharMap() : CharMap();
}

bool KrvFontFile::selectCharMap(const CharMap& map)
{
    return m_private->selectCharMap(map);
}

unsigned int KrvFontFile::glyphIndex(QChar c) const
{
    return glyphIndexOf(c.unicode());
}

unsigned int KrvFontFile::glyphIndexOf(uint codePoint) const
{
    return isOpen() ? FT_Get_Char_Index(face(), codePoint) : 0;
}

QList<ushort> KrvFontFile::characters() const
{
    return isOpen() ? m_private->cache().characters() : QList<ushort>();
}

QList<ushort> KrvFontFile::charactersInBlock(int blockIndex) const
{
    if (blockIndex == -1)
        return characters();
    const auto blocks = supportedBlocks();
    const auto block = blocks.constFind(blockIndex);
    return block == blocks.cend() ? QList<ushort>() : characters().mid(block->second, block->first);
}

QVector<uint> KrvFontFile::supplementaryCharacters() const
{
    return isOpen() ? m_private->cache().supplementaryCharacters() : QVector<uint>();
}

QHash<int, QPair<int, int>> KrvFontFile::supportedBlocks() const
{
    return isOpen() ? m_private->cache().blocks() : QHash<int, QPair<int, int>>();
}

FT_GlyphSlot KrvFontFile::loadGlyph(unsigned int glyphIndex, bool force)
{
    return m_private->loadGlyph(glyphIndex, force);
}

FT_GlyphSlot KrvFontFile::loadCharacter(ushort c, bool force)
{
    const unsigned int glyph = glyphIndexOf(c);
    return glyph ? loadGlyph(glyph, force) : nullptr;
}

bool KrvFontFile::setPixelSize(int pixels)
{
    return m_private->setPixelSize(pixels);
}

int KrvFontFile::pixelSize() const
{
    return m_private->pixelSize();
}

bool KrvFontFile::setPointSize(int points, int dpi)
{
    return m_private->setPointSize(points, dpi);
}

void KrvFontFile::applyMetricsCorrection(const KrvFontMetrics::MetricsCorrection& correction)
{
    m_private->applyMetricsCorrection(correction);
}

bool KrvFontFile::hasMetricsCorrection() const
{
    return isOpen() && m_private->hasMetricsCorrection();
}

KrvFontMetrics::MetricsCorrection KrvFontFile::metricsCorrection() const
{
    return isOpen() ? m_private->metricsCorrection() : KrvFontMetrics::MetricsCorrection();
}

int KrvFontFile::winAscent() const
{
    return winMetric(face(), &TT_OS2::usWinAscent);
}

int KrvFontFile::winDescent() const
{
    return winMetric(face(), &TT_OS2::usWinDescent);
}

int KrvFontFile::hintedAdvance(unsigned int glyph) const
{
    return m_private->hintedAdvance(glyph);
}

bool KrvFontFile::renderOutline(FT_Outline_* outline, SpanFunction spans, void* user) const
{
    return m_private->renderOutline(outline, spans, user);
}

KrvShapingFont* KrvFontFile::shapingFont() const
{
    return m_private->shapingFont();
}
