#pragma once

#include "fontfile/GlyphWorkLimit.h"
#include "fontfile/KrvFontFile.h"

#include <QHash>
#include <QObject>

#include <memory>

class KrvFontFileCache;
class KrvShapingFont;
class MappingGuard;
class QFile;

// The state of a KrvFontFile. Owns the mapped file, the FreeType face on it and everything computed from the face.
class KrvFontFilePrivate : public QObject
{
    Q_OBJECT

public:
    KrvFontFilePrivate(const QString& fileName, QObject* parent);
    ~KrvFontFilePrivate() override;

    bool open(int faceIndex);
    void close();
    bool isOpen() const;
    FT_Face face() const;
    QString fileName() const { return m_fileName; }

    QString sfntName(int nameId, int platformId, int languageId, bool exactMatch) const;

    KrvFontFileCache& cache() const { return *m_cache; }
    KrvFontFile::CharMap currentCharMap() const;
    bool selectCharMap(const KrvFontFile::CharMap& map);

    FT_GlyphSlot loadGlyph(unsigned int glyph, bool force);
    // Loads with FreeType's own flags, for the shaper; whatever loadGlyph() loaded last is gone then.
    FT_GlyphSlot loadUncached(unsigned int glyph, int loadFlags);
    int hintedAdvance(unsigned int glyph);
    bool renderOutline(FT_Outline_* outline, KrvFontFile::SpanFunction spans, void* user);
    KrvShapingFont* shapingFont();

    bool setPixelSize(int pixels);
    int pixelSize() const;
    bool setPointSize(int points, int dpi);
    void applyMetricsCorrection(const KrvFontMetrics::MetricsCorrection& correction);
    bool hasMetricsCorrection() const { return m_correction.isValid(); }
    KrvFontMetrics::MetricsCorrection metricsCorrection() const { return m_correction; }

    static KrvFontFile::Encoding encodingOf(int tag);
    static KrvFontFile::Platform platformOf(int platformId);

private:
    bool mapAndOpen(const QString& path, int faceIndex);
    void releaseFile();
    bool setFaceSize(int pixels);

    Qt::HANDLE m_thread;
    KrvFontMetrics::MetricsCorrection m_correction;
    std::unique_ptr<QFile> m_file;
    uchar* m_data = nullptr;
    std::unique_ptr<MappingGuard> m_guard;
    QString m_fileName;
    FT_Face m_face = nullptr;
    unsigned int m_lastGlyph = 0;
    bool m_slotHoldsLastGlyph = false; // false after anything else than loadGlyph() used the slot, or the size changed
    std::unique_ptr<KrvFontFileCache> m_cache;
    std::unique_ptr<KrvShapingFont> m_shapingFont;
    GlyphWorkLimit m_limit;
    QHash<unsigned int, int> m_advances; // at the current size
    int m_dpi = -1;
};
