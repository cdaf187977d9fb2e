#include "qtService/management/ZipReader.h"

#include <QFileInfo>
#include <QTextCodec>
#include <QtEndian>

#include <zlib.h>

namespace {

constexpr int endSize = 22;
constexpr int locatorSize = 20;
constexpr int longEndSize = 56;
constexpr int entrySize = 46;
constexpr int localSize = 30;
constexpr int longestComment = 0xffff;
constexpr qint64 largestDirectory = 1 << 30;
constexpr quint32 in64Bits = 0xffffffff;
constexpr quint16 encrypted = 1;
constexpr int bufferSize = 0x100000;

template <class Number>
Number number(const char* bytes)
{
    return qFromLittleEndian<Number>(bytes);
}

// Takes the values that did not fit into 32 bits out of an entry's extra fields, in their fixed order.
bool readLongValues(const char* extra, int length, const QList<quint64*>& values)
{
    constexpr quint16 longValues = 1;
    while (length >= 4) {
        const int size = number<quint16>(extra + 2);
        if (size > length - 4)
            return false;
        if (number<quint16>(extra) == longValues) {
            if (size < values.size() * 8)
                return false;
            for (int i = 0; i < values.size(); ++i)
                *values.at(i) = number<quint64>(extra + 4 + 8 * i);
            return true;
        }
        extra += 4 + size;
        length -= 4 + size;
    }
    return false;
}

// Names are UTF-8; what is not was written by a tool that used the code page of its time.
QString entryName(const QByteArray& bytes)
{
    QTextCodec::ConverterState state;
    const QString name = QTextCodec::codecForName("UTF-8")->toUnicode(bytes.constData(), bytes.size(), &state);
    if (state.invalidChars == 0 && state.remainingChars == 0)
        return name;
    const QTextCodec* const codePage = QTextCodec::codecForName("IBM850");
    return codePage ? codePage->toUnicode(bytes) : QString::fromLatin1(bytes);
}

} // namespace

// Writes content and follows its length and check sum.
class CheckedTarget
{
public:
    CheckedTarget(QIODevice* target, const ZipReader::Entry& entry, const ZipReader::Observer& observer)
        : m_target(target)
        , m_entry(entry)
        , m_observer(observer)
    {
    }

    ZipReader::Outcome write(const char* bytes, qint64 length)
    {
        m_written += quint64(length);
        m_checksum = crc32(m_checksum, reinterpret_cast<const Bytef*>(bytes), uInt(length));
        if (m_written > m_entry.size)
            return ZipReader::Damaged;
        if (m_target->write(bytes, length) != length)
            return ZipReader::NotWritten;
        return !m_observer || m_observer(length) ? ZipReader::Extracted : ZipReader::Interrupted;
    }
    ZipReader::Outcome end() const
    {
        return m_written == m_entry.size && m_checksum == m_entry.checksum ? ZipReader::Extracted : ZipReader::Damaged;
    }

private:
    QIODevice* m_target;
    const ZipReader::Entry& m_entry;
    const ZipReader::Observer& m_observer;
    quint64 m_written = 0;
    uLong m_checksum = crc32(0, nullptr, 0);
};

bool ZipReader::open(const QString& path)
{
    m_entries.clear();
    m_file.close();
    m_file.setFileName(path);
    // Opening a pipe would wait for ever for its writer.
    if (!QFileInfo(path).isFile() || !m_file.open(QIODevice::ReadOnly))
        return false;
    Directory directory;
    return findDirectory(&directory) && readEntries(directory);
}

bool ZipReader::findDirectory(Directory* directory)
{
    const qint64 tailSize = qMin<qint64>(m_file.size(), endSize + longestComment);
    if (!m_file.seek(m_file.size() - tailSize))
        return false;
    const QByteArray tail = m_file.read(tailSize);
    for (int at = tail.size() - endSize; at >= 0; --at) {
        const char* const end = tail.constData() + at;
        if (number<quint32>(end) != 0x06054b50 || at + endSize + number<quint16>(end + 20) > tail.size())
            continue;
        directory->count = number<quint16>(end + 10);
        directory->size = number<quint32>(end + 12);
        directory->offset = number<quint32>(end + 16);
        directory->end = quint64(m_file.size() - tailSize + at);
        return readLongDirectory(qint64(directory->end), directory);
    }
    return false;
}

// True without a change when the archive has no such record.
bool ZipReader::readLongDirectory(qint64 endPosition, Directory* directory)
{
    if (endPosition < locatorSize + longEndSize || !m_file.seek(endPosition - locatorSize))
        return true;
    const QByteArray locator = m_file.read(locatorSize);
    if (locator.size() != locatorSize || number<quint32>(locator.constData()) != 0x07064b50)
        return true;
    // Where the locator points, or right before it when something was put in front of the archive.
    for (const quint64 position :
         {number<quint64>(locator.constData() + 8), quint64(endPosition - locatorSize - longEndSize)}) {
        if (position > quint64(endPosition - locatorSize - longEndSize) || !m_file.seek(qint64(position)))
            continue;
        const QByteArray record = m_file.read(longEndSize);
        if (record.size() != longEndSize || number<quint32>(record.constData()) != 0x06064b50)
            continue;
        directory->count = number<quint64>(record.constData() + 32);
        directory->size = number<quint64>(record.constData() + 40);
        directory->offset = number<quint64>(record.constData() + 48);
        directory->end = position;
        return true;
    }
    return false;
}

bool ZipReader::readEntries(const Directory& directory)
{
    if (directory.size > quint64(largestDirectory) || directory.size > directory.end ||
        directory.offset > directory.end - directory.size || directory.count > directory.size / entrySize)
        return false;
    // Offsets count from the start of the archive, which a self-extracting file has a program in front of.
    const quint64 start = directory.end - directory.size - directory.offset;
    if (!m_file.seek(qint64(start + directory.offset)))
        return false;
    const QByteArray bytes = m_file.read(qint64(directory.size));
    if (quint64(bytes.size()) != directory.size)
        return false;

    const char* at = bytes.constData();
    const char* const end = at + bytes.size();
    m_entries.reserve(int(directory.count));
    for (quint64 i = 0; i < directory.count; ++i) {
        if (end - at < entrySize || number<quint32>(at) != 0x02014b50)
            return false;
        const int nameLength = number<quint16>(at + 28);
        const int extraLength = number<quint16>(at + 30);
        const int commentLength = number<quint16>(at + 32);
        if (end - at - entrySize < nameLength + extraLength + commentLength)
            return false;
        Entry entry;
        entry.name = entryName(QByteArray::fromRawData(at + entrySize, nameLength));
        entry.flags = number<quint16>(at + 8);
        entry.method = number<quint16>(at + 10);
        entry.checksum = number<quint32>(at + 16);
        entry.compressedSize = number<quint32>(at + 20);
        entry.size = number<quint32>(at + 24);
        entry.offset = number<quint32>(at + 42);
        QList<quint64*> longValues;
        for (quint64* value : {&entry.size, &entry.compressedSize, &entry.offset})
            if (*value == in64Bits)
                longValues.append(value);
        if (!longValues.isEmpty() && !readLongValues(at + entrySize + nameLength, extraLength, longValues))
            return false;
        if (entry.offset > directory.end || entry.compressedSize > directory.end)
            return false;
        entry.offset += start;
        m_entries.append(entry);
        at += entrySize + nameLength + extraLength + commentLength;
    }
    return true;
}

ZipReader::Outcome ZipReader::extract(const Entry& entry, QIODevice* target, const Observer& observer)
{
    if (entry.flags & encrypted)
        return Encrypted;
    if (!seekContent(entry))
        return Damaged;
    CheckedTarget checked(target, entry, observer);
    switch (entry.method) {
    case 0:
        return copyStored(entry, &checked);
    case Z_DEFLATED:
        return copyDeflated(entry, &checked);
    default:
        return Damaged;
    }
}

// The local header has lengths of its own for name and extra fields.
bool ZipReader::seekContent(const Entry& entry)
{
    if (!m_file.seek(qint64(entry.offset)))
        return false;
    const QByteArray header = m_file.read(localSize);
    if (header.size() != localSize || number<quint32>(header.constData()) != 0x04034b50)
        return false;
    const int skipped = number<quint16>(header.constData() + 26) + number<quint16>(header.constData() + 28);
    return m_file.seek(m_file.pos() + skipped);
}

ZipReader::Outcome ZipReader::copyStored(const Entry& entry, CheckedTarget* target)
{
    QByteArray buffer(bufferSize, Qt::Uninitialized);
    for (quint64 left = entry.compressedSize; left > 0;) {
        const qint64 read = m_file.read(buffer.data(), qint64(qMin<quint64>(left, bufferSize)));
        if (read <= 0)
            return Damaged;
        const Outcome outcome = target->write(buffer.constData(), read);
        if (outcome != Extracted)
            return outcome;
        left -= quint64(read);
    }
    return target->end();
}

ZipReader::Outcome ZipReader::copyDeflated(const Entry& entry, CheckedTarget* target)
{
    z_stream stream = {};
    if (inflateInit2(&stream, -MAX_WBITS) != Z_OK)
        return Damaged;
    QByteArray input(bufferSize, Qt::Uninitialized);
    QByteArray output(bufferSize, Qt::Uninitialized);
    quint64 left = entry.compressedSize;
    int result = Z_OK;
    Outcome outcome = Extracted;
    while (outcome == Extracted && result == Z_OK) {
        if (stream.avail_in == 0 && left > 0) {
            const qint64 read = m_file.read(input.data(), qint64(qMin<quint64>(left, bufferSize)));
            if (read <= 0)
                break;
            left -= quint64(read);
            stream.next_in = reinterpret_cast<Bytef*>(input.data());
            stream.avail_in = uInt(read);
        }
        stream.next_out = reinterpret_cast<Bytef*>(output.data());
        stream.avail_out = bufferSize;
        result = inflate(&stream, Z_NO_FLUSH);
        outcome = target->write(output.constData(), bufferSize - qint64(stream.avail_out));
    }
    inflateEnd(&stream);
    if (outcome != Extracted)
        return outcome;
    return result == Z_STREAM_END ? target->end() : Damaged;
}
