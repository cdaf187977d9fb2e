#include "fontfile/KrvFontFilePrivate.h"

#include "fontfile/FreeTypeLibraryRegistry.h"
#include "fontfile/KrvFontFileCache.h"
#include "fontfile/KrvShapingFont.h"
#include "fontfile/platform_mappingguard.h"

#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QScreen>
#include <QTextCodec>
#include <QThread>

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_ADVANCES_H
#include FT_OUTLINE_H

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>

namespace {

constexpr FT_Int32 glyphLoadFlags = FT_LOAD_NO_BITMAP | FT_LOAD_TARGET_LIGHT;
constexpr int maxPixelSize = 0xFFFF; // what FreeType itself goes up to
constexpr int nameIdPostScript = 6;
constexpr int platformMacintosh = 1;
constexpr int platformMicrosoft = 3;

// In the order of KrvFontFile::Encoding.
constexpr FT_Encoding encodingTags[] = {FT_ENCODING_NONE,         FT_ENCODING_MS_SYMBOL,    FT_ENCODING_UNICODE,
                                        FT_ENCODING_SJIS,         FT_ENCODING_PRC,          FT_ENCODING_BIG5,
                                        FT_ENCODING_WANSUNG,      FT_ENCODING_JOHAB,        FT_ENCODING_ADOBE_STANDARD,
                                        FT_ENCODING_ADOBE_EXPERT, FT_ENCODING_ADOBE_CUSTOM, FT_ENCODING_ADOBE_LATIN_1,
                                        FT_ENCODING_OLD_LATIN_2,  FT_ENCODING_APPLE_ROMAN};

// Sizes come from factors in the catalogue and quotients of them: anything may be in a double.
int toPixels(double value)
{
    return std::isnan(value) ? 0 : int(qBound(-double(maxPixelSize), value, double(maxPixelSize)));
}

int screenDpi()
{
    const QScreen* screen =
        qobject_cast<QGuiApplication*>(QCoreApplication::instance()) ? QGuiApplication::primaryScreen() : nullptr;
    return screen ? qRound(screen->logicalDotsPerInchX()) : 96;
}

// The entry for the key, else the best of the others: Microsoft's and Macintosh's texts can be decoded, and among
// languages the lowest id is English on either platform.
template <class Map>
typename Map::const_iterator entryOrFirst(const Map& map, int key)
{
    const auto found = map.constFind(key);
    return found != map.cend() ? found : map.cbegin();
}

} // namespace

KrvFontFilePrivate::KrvFontFilePrivate(const QString& fileName, QObject* parent)
    : QObject(parent)
    , m_thread(QThread::currentThreadId())
    , m_fileName(fileName)
    , m_cache(std::make_unique<KrvFontFileCache>(this))
{
}

KrvFontFilePrivate::~KrvFontFilePrivate()
{
    if (isOpen()) {
        close();
    } else if (m_face) {
        // Destroyed on a foreign thread: the face, what it reads and what was made from it stay as they are, because
        // they belong to a library that the owning thread may be using at this moment.
        m_shapingFont.release();
        m_guard.release();
        m_file.release();
    }
}

bool KrvFontFilePrivate::open(int faceIndex)
{
    if (m_thread != QThread::currentThreadId() || faceIndex < 0)
        return false;
    const KrvFontFile::Format format = KrvFontFile::formatFromFileName(m_fileName);
    if (format == KrvFontFile::FormatPfb)
        return false;
    QString path = m_fileName;
    if (format == KrvFontFile::FormatPfm && KrvFontFile::companionFileExists(path, KrvFontFile::FormatPfb))
        path = KrvFontFile::companionFileName(path, KrvFontFile::FormatPfb);
    // Opening a pipe or a device of that name could wait for ever.
    if (!QFileInfo(path).isFile())
        return false;
    if (m_face)
        return true;
    if (!mapAndOpen(path, faceIndex))
        return false;
    if (currentCharMap().index < 0 && !m_cache->charMaps().isEmpty())
        selectCharMap(m_cache->charMaps().first());
    return true;
}

bool KrvFontFilePrivate::mapAndOpen(const QString& path, int faceIndex)
{
    const FT_Library library = FreeTypeLibraryRegistry::instance().currentThreadLibrary();
    m_file = std::make_unique<QFile>(path);
    if (library && m_file->open(QIODevice::ReadOnly))
        m_data = m_file->map(0, m_file->size());
    if (m_data)
        m_guard = std::make_unique<MappingGuard>(m_data, m_file->size());
    FT_Face face = nullptr;
    if (!m_data || FT_New_Memory_Face(library, m_data, FT_Long(m_file->size()), faceIndex, &face) != 0) {
        releaseFile();
        return false;
    }
    m_face = face;
    m_limit = GlyphWorkLimit();
    return true;
}

void KrvFontFilePrivate::close()
{
    if (!isOpen())
        return;
    m_shapingFont.reset();
    FT_Done_Face(m_face);
    m_face = nullptr;
    m_lastGlyph = 0;
    m_slotHoldsLastGlyph = false;
    m_advances.clear();
    m_cache = std::make_unique<KrvFontFileCache>(this);
    releaseFile();
}

void KrvFontFilePrivate::releaseFile()
{
    m_guard.reset();
    if (m_data)
        m_file->unmap(m_data);
    m_data = nullptr;
    m_file.reset();
}

bool KrvFontFilePrivate::isOpen() const
{
    return m_face && m_thread == QThread::currentThreadId();
}

FT_Face KrvFontFilePrivate::face() const
{
    return isOpen() ? m_face : nullptr;
}

QString KrvFontFilePrivate::sfntName(int nameId, int platformId, int languageId, bool exactMatch) const
{
    const KrvFontFileCache::Names& platforms = m_cache->names();
    if (!platforms.contains(platformId)) {
        if (platforms.isEmpty() || exactMatch)
            return QString();
        platformId = platforms.contains(platformMicrosoft)   ? platformMicrosoft
                     : platforms.contains(platformMacintosh) ? platformMacintosh
                                                             : platforms.firstKey();
    }
    const KrvFontFileCache::NamesById names = *entryOrFirst(platforms[platformId], languageId);
    const QByteArray bytes = names.value(nameId);
    if (bytes.isEmpty())
        return QString();
    const char* encoding = platformId == platformMicrosoft ? "UTF-16BE" : "UTF-8";
    QString text = QTextCodec::codecForName(encoding)->toUnicode(bytes);
    if (nameId != nameIdPostScript) {
        const int nul = text.indexOf(QChar(0));
        if (nul >= 0)
            text.truncate(nul);
        text = text.trimmed();
    }
    return text;
}

KrvFontFile::CharMap KrvFontFilePrivate::currentCharMap() const
{
    for (int i = 0; m_face->charmap && i < m_face->num_charmaps; ++i) {
        if (m_face->charmaps[i] == m_face->charmap)
            return m_cache->charMaps().at(i);
    }
    return {};
}

FT_GlyphSlot KrvFontFilePrivate::loadGlyph(unsigned int glyph, bool force)
{
    if (!isOpen() || !m_limit.mayLoad(m_face, glyph))
        return nullptr;
    if (force || !m_slotHoldsLastGlyph || glyph != m_lastGlyph) {
        m_lastGlyph = glyph;
        m_slotHoldsLastGlyph = true;
        const GlyphWorkLimit::Timed timed(m_limit);
        if (FT_Load_Glyph(m_face, glyph, glyphLoadFlags) != 0)
            return nullptr;
    }
    return m_face->glyph;
}

FT_GlyphSlot KrvFontFilePrivate::loadUncached(unsigned int glyph, int loadFlags)
{
    if (!isOpen() || !m_limit.mayLoad(m_face, glyph))
        return nullptr;
    m_slotHoldsLastGlyph = false;
    const GlyphWorkLimit::Timed timed(m_limit);
    return FT_Load_Glyph(m_face, glyph, loadFlags) == 0 ? m_face->glyph : nullptr;
}

int KrvFontFilePrivate::hintedAdvance(unsigned int glyph)
{
    if (!isOpen())
        return 0;
    const auto known = m_advances.constFind(glyph);
    if (known != m_advances.cend())
        return *known;
    int pixels = 0;
    if (m_limit.mayLoad(m_face, glyph)) {
        const GlyphWorkLimit::Timed timed(m_limit);
        m_slotHoldsLastGlyph = false; // FreeType uses the slot for this
        FT_Fixed advance = 0;
        if (FT_Get_Advance(m_face, glyph, FT_LOAD_DEFAULT, &advance) == 0)
            pixels = int(qBound<FT_Fixed>(-maxPixelSize, (advance + 32) >> 16, maxPixelSize));
    }
    m_advances.insert(glyph, pixels);
    return pixels;
}

bool KrvFontFilePrivate::renderOutline(FT_Outline_* outline, KrvFontFile::SpanFunction spans, void* user)
{
    if (!isOpen() || !m_limit.mayRender(*outline))
        return false;
    FT_Raster_Params parameters;
    std::memset(&parameters, 0, sizeof parameters);
    parameters.source = outline;
    parameters.flags = FT_RASTER_FLAG_AA | FT_RASTER_FLAG_DIRECT;
    parameters.gray_spans = spans;
    parameters.user = user;
    const GlyphWorkLimit::Timed timed(m_limit);
    return FT_Outline_Render(FreeTypeLibraryRegistry::instance().currentThreadLibrary(), outline, &parameters) == 0;
}

KrvShapingFont* KrvFontFilePrivate::shapingFont()
{
    if (!isOpen())
        return nullptr;
    if (!m_shapingFont)
        m_shapingFont = std::make_unique<KrvShapingFont>(this);
    return m_shapingFont.get();
}

bool KrvFontFilePrivate::selectCharMap(const KrvFontFile::CharMap& map)
{
    if (!isOpen() || map.index >= m_face->num_charmaps)
        return false;
    const FT_CharMap before = m_face->charmap;
    if (map.encoding < 0 || size_t(map.encoding) >= std::size(encodingTags) ||
        FT_Select_Charmap(m_face, encodingTags[map.encoding]) != 0)
        return false;
    if (m_face->charmap != before) {
        m_cache->forgetCoverage();
        if (m_shapingFont)
            m_shapingFont->forgetTexts();
    }
    return true;
}

bool KrvFontFilePrivate::setFaceSize(int pixels)
{
    // Without units per em there is no scale; FreeType would carry on with the largest number it has.
    if (pixels < 0 || (FT_IS_SCALABLE(m_face) && m_face->units_per_EM == 0))
        return false;
    const FT_Size_Metrics before = m_face->size->metrics;
    const bool set = FT_Set_Pixel_Sizes(m_face, FT_UInt(pixels), 0) == 0;
    const FT_Size_Metrics& now = m_face->size->metrics;
    m_limit.reset();
    if (before.x_ppem != now.x_ppem || before.x_scale != now.x_scale) {
        m_slotHoldsLastGlyph = false;
        m_advances.clear();
        if (m_shapingFont)
            m_shapingFont->updateSize();
    }
    return set;
}

bool KrvFontFilePrivate::setPixelSize(int pixels)
{
    if (!isOpen())
        return false;
    return setFaceSize(hasMetricsCorrection() ? toPixels(pixels * m_correction.c0) : qMin(pixels, maxPixelSize));
}

int KrvFontFilePrivate::pixelSize() const
{
    if (!isOpen())
        return 0;
    const int pixels = m_face->size->metrics.x_ppem;
    return hasMetricsCorrection() ? toPixels(pixels / m_correction.c0) : pixels;
}

bool KrvFontFilePrivate::setPointSize(int points, int dpi)
{
    m_dpi = dpi == -1 ? screenDpi() : dpi;
    return setPixelSize(toPixels(std::round(m_dpi / 72.0 * points)));
}

void KrvFontFilePrivate::applyMetricsCorrection(const KrvFontMetrics::MetricsCorrection& correction)
{
    if (!isOpen() || !correction.isValid())
        return;
    if (hasMetricsCorrection()) {
        // Back to the nominal size first, so that factors never compound.
        const int nominal = pixelSize();
        m_correction = {};
        setFaceSize(nominal);
    }
    setFaceSize(toPixels(pixelSize() * correction.c0));
    m_correction = correction;
}

KrvFontFile::Encoding KrvFontFilePrivate::encodingOf(int tag)
{
    const auto found = std::find(std::begin(encodingTags), std::end(encodingTags), tag);
    return found == std::end(encodingTags) ? KrvFontFile::EncodingNone
                                           : KrvFontFile::Encoding(found - std::begin(encodingTags));
}

KrvFontFile::Platform KrvFontFilePrivate::platformOf(int platformId)
{
    switch (platformId) {
    case 1:
        return KrvFontFile::PlatformMacintosh;
    case 2:
        return KrvFontFile::PlatformIso;
    case 3:
        return KrvFontFile::PlatformMicrosoft;
    case 4:
        return KrvFontFile::PlatformCustom;
    case 7:
        return KrvFontFile::PlatformAdobe;
    default:
        return KrvFontFile::PlatformUnknown;
    }
}
