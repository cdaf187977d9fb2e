#pragma once

#include <QString>

#include <memory>

class KrvFontFilePrivate;
struct KrvShaperData;
struct hb_buffer_t;
struct hb_face_t;
struct hb_font_t;

// HarfBuzz's view of an open face: tables through FreeType, advances hinted to whole pixels, glyphs through the
// selected character map. Belongs to the face and dies with it. Keeps the text shaped last, because measuring, wrapping
// and drawing a line ask for the same one in turn.
class KrvShapingFont
{
public:
    explicit KrvShapingFont(KrvFontFilePrivate* owner);
    ~KrvShapingFont();
    KrvShapingFont(const KrvShapingFont&) = delete;
    KrvShapingFont& operator=(const KrvShapingFont&) = delete;

    // Null for a text that the font's tables blow up beyond reason.
    std::shared_ptr<const KrvShaperData> shape(const QString& text);
    void updateSize();
    void forgetTexts();

private:
    std::shared_ptr<const KrvShaperData> shapeAnew(const QString& text);

    KrvFontFilePrivate* m_owner;
    hb_face_t* m_face = nullptr;
    hb_font_t* m_font = nullptr;
    hb_buffer_t* m_buffer = nullptr;
    QString m_lastText;
    std::shared_ptr<const KrvShaperData> m_lastShaped;
};
