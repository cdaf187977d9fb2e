#pragma once

#include "fontfile/KrvFontMetrics.h"

#include <QCache>
#include <QImage>
#include <QList>
#include <QTimer>
#include <QVector>

#include <memory>

class KrvFontFile;

// The font behind a character map: which characters it covers, and their pictures. Characters are code points here, so
// those above U+FFFF are reached too; they and whatever lies outside the table of blocks make up the difference between
// the blocks and AllCharacters.
//
// The file is opened when something is asked and closed a moment after the last question, so that the user may replace
// or remove it while its map is on the screen. Pictures are kept up to a bound of memory, across fonts, so coming back
// to a font, a range or a size costs nothing. Main thread.
class CharacterMapFont : public QObject
{
    Q_OBJECT

public:
    static constexpr int AllCharacters = -1;

    explicit CharacterMapFont(QObject* parent = nullptr);
    ~CharacterMapFont() override;

    // An empty name: no font.
    void setFont(const QString& fileName, int faceIndex, const KrvFontMetrics::MetricsCorrection& correction);
    // Blocks by their index in the table, those first; then AllCharacters if the font covers more than they hold.
    QList<int> ranges();
    // Ascending and without repetition; only what the font has a glyph for.
    QVector<uint> characters(int range);

    // A square of size times pixelRatio pixels, black on nothing, the glyph in its middle; null without a font that can
    // be opened. Glyphs that would stick out are moved inside, and made smaller when they are larger than the square.
    QImage image(uint character, int size, double pixelRatio);
    // From what is kept; null when it would have to be drawn.
    QImage keptImage(uint character, int size, double pixelRatio) const;
    QString imageKey(uint character, int size, double pixelRatio) const;

private:
    bool open();
    void close();
    QImage render(uint character, int pixels);

    QString m_fileName;
    int m_faceIndex = 0;
    KrvFontMetrics::MetricsCorrection m_correction;
    QString m_fontKey;
    std::unique_ptr<KrvFontFile> m_file;
    bool m_cannotOpen = false;
    QTimer m_closing;
    QCache<QString, QImage> m_images; // coverage
};
