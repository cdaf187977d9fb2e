#include "qtService/ui/details/CharacterMapFont.h"

#include "fontfile/KrvFontFile.h"
#include "fontfile/KrvFontPainter.h"

#include <QCryptographicHash>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

// Kept as coverage alone, a byte for each pixel: some 16,000 cells of the usual size. It must hold whatever is in sight
// at once, or a map would draw for ever; this is enough for the largest cells all over a screen of 7,680 by 4,320
// pixels.
constexpr int maximumCost = 26 * 1024 * 1024;
constexpr int costOfAnEntry = 512; // its key and its place in the cache
constexpr int keepOpenMs = 1000;
// A glyph larger than this many squares is cut.
constexpr double maximumShrinking = 4;

// Where drawGlyph() puts the glyph's box in a square of this side.
QRect placedBox(const QRect& box, int side)
{
    const QPoint origin(side / 2 - box.width() / 2 - box.left(), side / 2 + box.height() / 2);
    return box.translated(origin);
}

int marginOf(int side)
{
    return (side + 23) / 24;
}

// How far a span must move to lie in a square of this side, clear of its edges if it is short enough.
int shiftInto(int first, int last, int side)
{
    const int lowest = qBound(0, (side - (last - first + 1)) / 2, marginOf(side));
    const int highest = side - 1 - lowest;
    if (first < lowest)
        return lowest - first;
    return last > highest ? qMax(highest - last, lowest - first) : 0;
}

} // namespace

CharacterMapFont::CharacterMapFont(QObject* parent)
    : QObject(parent)
    , m_images(maximumCost)
{
    m_closing.setSingleShot(true);
    m_closing.setInterval(keepOpenMs);
    connect(&m_closing, &QTimer::timeout, this, &CharacterMapFont::close);
}

CharacterMapFont::~CharacterMapFont() = default;

void CharacterMapFont::setFont(const QString& fileName, int faceIndex,
                               const KrvFontMetrics::MetricsCorrection& correction)
{
    close();
    m_cannotOpen = false;
    m_fileName = fileName;
    m_faceIndex = faceIndex;
    m_correction = correction;
    const QString name = QStringLiteral("%1.%2").arg(fileName, correction.toString());
    const QByteArray hash = QCryptographicHash::hash(name.toUtf8(), QCryptographicHash::Sha1).toHex();
    m_fontKey = QStringLiteral("%1.%2").arg(QString::fromLatin1(hash)).arg(faceIndex);
}

bool CharacterMapFont::open()
{
    if (m_file) {
        m_closing.start();
        return true;
    }
    // A file that does not open is not tried again for every cell.
    if (m_fileName.isEmpty() || m_cannotOpen)
        return false;
    auto file = std::make_unique<KrvFontFile>(m_fileName);
    m_cannotOpen = !file->open(m_faceIndex);
    if (m_cannotOpen)
        return false;
    m_file = std::move(file);
    m_closing.start();
    return true;
}

void CharacterMapFont::close()
{
    m_closing.stop();
    m_file.reset();
}

QList<int> CharacterMapFont::ranges()
{
    QList<int> ranges;
    if (!open())
        return ranges;
    // The file's own lists fold characters above U+FFFF into lower ones that the font may not have.
    int inBlocks = 0;
    for (int block = 0; block < KrvFontFile::unicodeBlockCount(); ++block) {
        const int count = characters(block).size();
        inBlocks += count;
        if (count > 0)
            ranges.append(block);
    }
    if (characters(AllCharacters).size() > inBlocks)
        ranges.append(AllCharacters);
    return ranges;
}

QVector<uint> CharacterMapFont::characters(int range)
{
    QVector<uint> characters;
    if (!open())
        return characters;
    const QList<ushort> covered = m_file->charactersInBlock(range);
    characters.reserve(covered.size());
    for (const ushort character : covered) {
        if ((characters.isEmpty() || characters.last() != character) && m_file->glyphIndexOf(character) != 0)
            characters.append(character);
    }
    if (range == AllCharacters)
        characters += m_file->supplementaryCharacters();
    return characters;
}

QString CharacterMapFont::imageKey(uint character, int size, double pixelRatio) const
{
    return QStringLiteral("%1-%2-%3")
        .arg(m_fontKey)
        .arg(qRound(size * pixelRatio))
        .arg(character, 4, 16, QLatin1Char('0'));
}

QImage CharacterMapFont::keptImage(uint character, int size, double pixelRatio) const
{
    const QImage* kept = m_images.object(imageKey(character, size, pixelRatio));
    if (!kept)
        return QImage();
    // Sizes that come to the same pixels share a picture.
    QImage image = kept->convertToFormat(QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(pixelRatio);
    return image;
}

QImage CharacterMapFont::image(uint character, int size, double pixelRatio)
{
    QImage image = keptImage(character, size, pixelRatio);
    if (!image.isNull() || !open())
        return image;
    image = render(character, qRound(size * pixelRatio));
    if (image.isNull())
        return image;
    auto* coverage = new QImage(image.convertToFormat(QImage::Format_Alpha8));
    m_images.insert(imageKey(character, size, pixelRatio), coverage, int(coverage->sizeInBytes()) + costOfAnEntry);
    image.setDevicePixelRatio(pixelRatio);
    return image;
}

QImage CharacterMapFont::render(uint character, int pixels)
{
    // Setting a size renews what the file may spend on slow glyphs, so only a new one is set.
    if (m_file->pixelSize() != pixels || m_file->hasMetricsCorrection() != m_correction.isValid()) {
        m_file->setPixelSize(pixels);
        if (!m_file->hasMetricsCorrection())
            m_file->applyMetricsCorrection(m_correction);
    }
    const unsigned int glyph = m_file->glyphIndexOf(character);
    const QRect box = KrvFontMetrics(m_file.get()).glyphBox(glyph);
    const double excess = double(qMax(box.width(), box.height())) / pixels;
    const int side = int(std::ceil(pixels * qBound(1.0, excess, maximumShrinking)));

    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    const QRect placed = placedBox(box, side);
    painter.translate(shiftInto(placed.left(), placed.right(), side), shiftInto(placed.top(), placed.bottom(), side));
    // The painter clips to the rectangle, which moves along; one that is as much larger on each side has the same
    // middle and cuts nothing.
    KrvFontPainter(&painter, m_file.get())
        .drawGlyph(image.rect().adjusted(-side, -side, side, side), Qt::AlignHCenter | Qt::AlignVCenter, glyph);
    painter.end();
    if (side != pixels)
        image = image.scaled(pixels, pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return image;
}
