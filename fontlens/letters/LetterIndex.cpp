#include "fontlens/letters/LetterIndex.h"

#include "fontlens/letters/CandidateFace.h"
#include "fontlens/letters/DescriptorCache.h"
#include "fontlens/letters/WorkSharing.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QFileInfo>
#include <QMutexLocker>

#include <cmath>
#include <cstring>

namespace kerval::letters {

namespace {

constexpr double measuringHeight = 64;         // pixels per em: a hairline of a hundredth still counts for two thirds
constexpr int largestSide = 512;               // of a glyph drawn for measuring; what is larger is reduced
constexpr qint64 mostBytesInMemory = 96 << 20; // all tables together; the characters last used stay

quint64 keyOf(const QString& file, int faceIndex)
{
    const QFileInfo info(file);
    if (!info.isFile())
        return 0;
    QCryptographicHash hash(QCryptographicHash::Sha1);
    hash.addData(file.toUtf8());
    const qint64 rest[] = {info.size(), info.lastModified().toMSecsSinceEpoch(), faceIndex};
    hash.addData(reinterpret_cast<const char*>(rest), int(sizeof rest));
    quint64 key = 0;
    std::memcpy(&key, hash.result().constData(), sizeof key);
    return key == 0 ? 1 : key;
}

bool measure(const GlyphOutline& outline, ShapeDescriptor& shape)
{
    if (outline.isEmpty())
        return false;
    double scale = measuringHeight;
    Placement placement = Placement::of(scale);
    GlyphOutline::Box box = outline.box(placement);
    const double side = qMax(box.right - box.left, box.bottom - box.top);
    if (!(side > 0))
        return false;
    // Small signs are drawn larger, giants smaller.
    const double wanted = qBound(24.0, side, double(largestSide));
    scale *= wanted / side;
    placement = Placement::of(scale);
    box = outline.box(placement);
    placement.dx = 1 - box.left;
    placement.dy = 1 - box.top;
    Coverage drawn(int(box.right - box.left) + 3, int(box.bottom - box.top) + 3);
    outline.draw(placement, drawn);
    return ShapeDescriptor::of(drawn, 1 / scale, 0, shape);
}

} // namespace

LetterIndex::LetterIndex(const QString& cacheFolder)
    : m_cache(std::make_unique<DescriptorCache>(cacheFolder))
{
}

LetterIndex::~LetterIndex() = default;

void LetterIndex::setFaces(const QVector<QPair<QString, int>>& files)
{
    const QMutexLocker locker(&m_mutex);
    m_files = files;
    m_faces.reset();
}

QSharedPointer<const IndexedFaces> LetterIndex::faces()
{
    QVector<QPair<QString, int>> files;
    {
        const QMutexLocker locker(&m_mutex);
        if (m_faces)
            return m_faces;
        files = m_files;
    }
    auto made = QSharedPointer<IndexedFaces>::create();
    made->reserve(std::size_t(files.size()));
    for (const auto& [file, faceIndex] : qAsConst(files))
        made->push_back({file, faceIndex, keyOf(file, faceIndex)});
    const QMutexLocker locker(&m_mutex);
    if (!m_faces && m_files == files)
        m_faces = made;
    return m_faces ? m_faces : made;
}

QVector<LetterTablePtr> LetterIndex::tables(const QVector<QChar>& characters, QThreadPool* pool,
                                            const std::function<bool()>& cancelled)
{
    const QSharedPointer<const IndexedFaces> all = faces();
    QVector<QSharedPointer<LetterTable>> made;
    std::vector<char> incomplete(all->size(), 0);
    for (const QChar character : characters) {
        made.append(known(character, all));
        for (std::size_t i = 0; i < all->size(); ++i)
            incomplete[i] |= made.last()->rows[i].state == LetterTable::Unknown ? 1 : 0;
    }
    std::vector<int> open;
    for (std::size_t i = 0; i < all->size(); ++i) {
        if (incomplete[i])
            open.push_back(int(i));
    }
    QMutex mainParts;
    shareWork(pool, int(open.size()), [&](int place) {
        if (cancelled())
            return;
        const int i = open[std::size_t(place)];
        const IndexedFace& entry = (*all)[std::size_t(i)];
        CandidateFace face(entry.key ? entry.file : QString(), entry.faceIndex);
        for (int c = 0; c < characters.size(); ++c) {
            LetterTable::Row& row = made[c]->rows[std::size_t(i)];
            if (row.state != LetterTable::Unknown)
                continue;
            const GlyphOutline outline = face.outline(characters[c]);
            row.state = measure(outline, row.shape) ? LetterTable::Measured : LetterTable::Missing;
            ShapeDescriptor part;
            if (row.state == LetterTable::Measured && measure(outline.mainPart(), part)) {
                const QMutexLocker locker(&mainParts);
                made[c]->mainParts[i] = part;
            }
        }
    });
    QVector<LetterTablePtr> result;
    for (int c = 0; c < characters.size(); ++c) {
        result.append(made[c]);
        if (!cancelled())
            keep(characters[c], made[c]);
    }
    if (!open.empty() && !cancelled())
        shareWork(pool, int(characters.size()), [&](int c) { m_cache->write(characters[c], *made[c]); });
    return result;
}

// What memory and disk know of the character, with rows for the present faces.
QSharedPointer<LetterTable> LetterIndex::known(QChar character, const QSharedPointer<const IndexedFaces>& faces)
{
    LetterTablePtr earlier;
    {
        const QMutexLocker locker(&m_mutex);
        earlier = m_tables.value(character);
    }
    if (earlier && earlier->faces == faces)
        return earlier.constCast<LetterTable>(); // complete, so nobody writes to it
    auto table = QSharedPointer<LetterTable>::create();
    table->faces = faces;
    table->rows.resize(faces->size());
    if (earlier) {
        std::unordered_map<quint64, std::size_t> places;
        for (std::size_t i = 0; i < earlier->faces->size(); ++i)
            places.emplace((*earlier->faces)[i].key, i);
        for (std::size_t i = 0; i < faces->size(); ++i) {
            const auto place = (*faces)[i].key ? places.find((*faces)[i].key) : places.end();
            if (place == places.end())
                continue;
            table->rows[i] = earlier->rows[place->second];
            const auto part = earlier->mainParts.find(int(place->second));
            if (part != earlier->mainParts.end())
                table->mainParts[int(i)] = part->second;
        }
    } else {
        m_cache->read(character, *table);
    }
    return table;
}

void LetterIndex::keep(QChar character, const LetterTablePtr& table)
{
    const QMutexLocker locker(&m_mutex);
    m_tables.insert(character, table);
    m_lastUsed.removeOne(character);
    m_lastUsed.append(character);
    qint64 bytes = 0;
    for (int i = m_lastUsed.size() - 1; i >= 0; --i) {
        bytes += qint64(m_tables.value(m_lastUsed[i])->rows.size()) * qint64(sizeof(LetterTable::Row));
        if (bytes > mostBytesInMemory && i + 1 < m_lastUsed.size())
            m_tables.remove(m_lastUsed.takeAt(i));
    }
}

} // namespace kerval::letters
