#pragma once

#include <QFile>
#include <QList>
#include <QString>

#include <functional>

// The reading half of ZipArchive. minizip's own reader takes the sizes and places above 4 GiB of an archive for 2^32 -
// 1 on 64-bit Linux, so the directory is read here, and the content with zlib. Stored and deflated entries; what the
// directory claims is checked against the file.
class ZipReader
{
public:
    struct Entry
    {
        QString name;
        quint16 flags = 0;
        quint16 method = 0;
        quint32 checksum = 0;
        quint64 compressedSize = 0;
        quint64 size = 0;
        quint64 offset = 0; // of the local header, from the start of the file
    };

    enum Outcome
    {
        Extracted,
        Encrypted,
        Damaged, // or packed by an unknown method
        NotWritten,
        Interrupted
    };
    using Observer = std::function<bool(qint64 bytes)>;

    // False when the file is no archive or its directory is damaged.
    bool open(const QString& path);
    const QList<Entry>& entries() const { return m_entries; }
    // The observer, which may be empty, is called after each piece; false interrupts.
    Outcome extract(const Entry& entry, QIODevice* target, const Observer& observer);

private:
    struct Directory
    {
        quint64 count = 0;
        quint64 size = 0;
        quint64 offset = 0;
        quint64 end = 0; // where what follows the directory begins
    };

    bool findDirectory(Directory* directory);
    bool readLongDirectory(qint64 endPosition, Directory* directory);
    bool readEntries(const Directory& directory);
    bool seekContent(const Entry& entry);
    Outcome copyStored(const Entry& entry, class CheckedTarget* target);
    Outcome copyDeflated(const Entry& entry, class CheckedTarget* target);

    QFile m_file;
    QList<Entry> m_entries;
};
