#include "fontlens/letters/DescriptorCache.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QSaveFile>

#include <cstring>

namespace kerval::letters {

namespace {

constexpr quint32 magic = 0x314C564BU; // "KVL1"; another byte order does not match it
constexpr quint32 version = 1;         // to be raised when descriptors change
constexpr qint64 mostRows = 4'000'000;

struct Header
{
    quint32 magic;
    quint32 version;
    quint32 recordSize;
    quint32 count;
    quint64 checksum; // of the records
};

struct Record
{
    quint64 key;
    float logWidth;
    float logHeight;
    qint8 coefficients[ShapeDescriptor::waves];
    quint8 state;
    quint8 isMainPart;
    quint8 unused[6];
};
static_assert(sizeof(Record) == 104, "records are written as they lie in memory");

quint64 checksumOf(const char* data, std::size_t size)
{
    quint64 sum = 14695981039346656037ULL;
    for (std::size_t i = 0; i + 8 <= size; i += 8) {
        quint64 word = 0;
        std::memcpy(&word, data + i, 8);
        sum = (sum ^ word) * 1099511628211ULL;
        sum ^= sum >> 29;
    }
    return sum;
}

Record toRecord(quint64 key, const ShapeDescriptor& shape, quint8 state, bool isMainPart)
{
    Record record{};
    record.key = key;
    record.logWidth = shape.logWidth;
    record.logHeight = shape.logHeight;
    std::memcpy(record.coefficients, shape.coefficients.data(), sizeof record.coefficients);
    record.state = state;
    record.isMainPart = isMainPart ? 1 : 0;
    return record;
}

bool toShape(const Record& record, ShapeDescriptor& shape)
{
    constexpr float utmost = 20; // e to this many em is no letter; refuses NaN too
    if (!(record.logWidth > -utmost && record.logWidth < utmost && record.logHeight > -utmost &&
          record.logHeight < utmost))
        return false;
    shape.logWidth = record.logWidth;
    shape.logHeight = record.logHeight;
    std::memcpy(shape.coefficients.data(), record.coefficients, sizeof record.coefficients);
    return true;
}

} // namespace

DescriptorCache::DescriptorCache(const QString& folder)
    : m_folder(folder)
{
}

QString DescriptorCache::fileName(QChar character) const
{
    return QStringLiteral("%1/%2.letters").arg(m_folder).arg(character.unicode(), 4, 16, QLatin1Char('0'));
}

void DescriptorCache::read(QChar character, LetterTable& table) const
{
    QFile file(m_folder.isEmpty() ? QString() : fileName(character));
    Header header{};
    if (m_folder.isEmpty() || !file.open(QIODevice::ReadOnly) ||
        file.read(reinterpret_cast<char*>(&header), sizeof header) != sizeof header)
        return;
    const qint64 size = qint64(header.count) * qint64(sizeof(Record));
    if (header.magic != magic || header.version != version || header.recordSize != sizeof(Record) ||
        header.count > mostRows || file.size() != size + qint64(sizeof header))
        return;
    std::vector<Record> records(header.count);
    auto* bytes = reinterpret_cast<char*>(records.data());
    if (file.read(bytes, size) != size || checksumOf(bytes, std::size_t(size)) != header.checksum)
        return;

    std::unordered_map<quint64, int> places;
    places.reserve(table.faces->size());
    for (std::size_t i = 0; i < table.faces->size(); ++i)
        places.emplace((*table.faces)[i].key, int(i));
    for (const Record& record : records) {
        const auto place = places.find(record.key);
        ShapeDescriptor shape;
        if (place == places.end() || !toShape(record, shape))
            continue;
        LetterTable::Row& row = table.rows[std::size_t(place->second)];
        if (record.isMainPart) {
            table.mainParts[place->second] = shape;
        } else if (row.state == LetterTable::Unknown &&
                   (record.state == LetterTable::Missing || record.state == LetterTable::Measured)) {
            row = {shape, LetterTable::State(record.state)};
        }
    }
}

void DescriptorCache::write(QChar character, const LetterTable& table) const
{
    if (m_folder.isEmpty() || !QDir().mkpath(m_folder))
        return;
    std::vector<Record> records;
    records.reserve(table.rows.size() + table.mainParts.size());
    for (std::size_t i = 0; i < table.rows.size(); ++i) {
        const quint64 key = (*table.faces)[i].key;
        const LetterTable::Row& row = table.rows[i];
        if (key != 0 && row.state != LetterTable::Unknown)
            records.push_back(toRecord(key, row.shape, row.state, false));
        const auto part = table.mainParts.find(int(i));
        if (key != 0 && part != table.mainParts.end())
            records.push_back(toRecord(key, part->second, LetterTable::Measured, true));
    }
    const auto* bytes = reinterpret_cast<const char*>(records.data());
    const std::size_t size = records.size() * sizeof(Record);
    const Header header{magic, version, sizeof(Record), quint32(records.size()), checksumOf(bytes, size)};
    QSaveFile file(fileName(character));
    if (!file.open(QIODevice::WriteOnly))
        return;
    file.write(reinterpret_cast<const char*>(&header), sizeof header);
    file.write(bytes, qint64(size));
    if (file.commit()) // what cannot be kept is measured again
        dropOldest();
}

void DescriptorCache::dropOldest() const
{
    const QFileInfoList files =
        QDir(m_folder).entryInfoList({QStringLiteral("*.letters")}, QDir::Files, QDir::Time); // newest first
    qint64 total = 0;
    for (const QFileInfo& file : files) {
        total += file.size();
        if (total > mostBytes)
            QFile::remove(file.filePath());
    }
}

} // namespace kerval::letters
