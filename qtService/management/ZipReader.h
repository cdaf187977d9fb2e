#pragma once

#include <QFile>
#include <QList>
#include <QString>

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

    // False when the file is no archive or its directory is damaged.
    bool open(const QString& path);
    const QList<Entry>& entries() const { return m_entries; }
    // False for an encrypted entry, an unknown method, damaged content or a target that cannot take it.
    bool extract(const Entry& entry, QIODevice* target);

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
    bool copyStored(const Entry& entry, QIODevice* target);
    bool copyDeflated(const Entry& entry, QIODevice* target);

    QFile m_file;
    QList<Entry> m_entries;
};
