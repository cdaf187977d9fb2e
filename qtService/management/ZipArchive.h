#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

class ZipReader;

// A zip archive, read (by ZipReader) or written (by minizip) as a stream of entries; archives and entries above 4 GiB
// are Zip64. A value class: a copy takes the path and the password and starts closed, whatever its original has open.
//
// Reading trusts nothing: an entry whose target would lie outside the destination folder, one that is encrypted or
// whose check sum is wrong, and an archive that claims more content than the disk has room for are refused.
class ZipArchive
{
public:
    enum Mode
    {
        Closed = 0,
        Read = 1,
        Write = 2
    };

    // Why the last open() or extract() failed.
    enum Failure
    {
        NoFailure = 0,
        Unreadable, // no archive, or its directory is damaged
        Unsafe,     // an entry would leave the destination folder or stands in the way of another
        Encrypted,
        Damaged, // an entry's content, or it is packed in an unknown way
        NoRoom,
        NotWritten,
        Interrupted // by the observer
    };

    ZipArchive(const QString& archivePath, const QString& password);
    ZipArchive(const ZipArchive& other);
    ZipArchive& operator=(const ZipArchive& other);
    ~ZipArchive();

    // Write replaces a file that is at the path.
    bool open(int mode);
    // False when the end of a written archive did not reach the disk.
    bool close();

    int mode() const { return m_mode; }
    QString archivePath() const { return m_archivePath; }
    // Names of the entries in the archive's order; read mode only.
    QStringList entries() const { return m_entries; }
    // Of all entries, unpacked, as the archive claims; none unpacks to more than it claims. Read mode only.
    quint64 contentSize() const { return m_contentSize; }
    Failure failure() const { return m_failure; }
    // Called with the number of bytes after each piece that was unpacked; false stops the extraction.
    using Observer = std::function<bool(qint64 bytes)>;
    void setObserver(Observer observer) { m_observer = std::move(observer); }

    // The path below a destination folder at which an entry of this name arrives, without a "/" at the end; empty when
    // it would lie outside, or names nothing.
    static QString pathInside(const QString& entryName);

    // Writes an entry below the folder; a name that ends with "/" or "\" makes the folder, and with `withChildren` all
    // that lies in it. A name that is not in the archive is skipped. What was written before a failure stays.
    bool extract(const QString& entryName, const QString& destinationFolder, bool withChildren);
    // Adds a file, under its own name when `entryName` is empty.
    bool addFile(const QString& filePath, const QString& entryName);

private:
    bool openForReading();
    bool openForWriting();
    bool hasRoom(const QString& destinationFolder);
    bool extractEntry(int index, const QString& destinationFolder);
    bool fail(Failure failure);

    int m_mode = Closed;
    QStringList m_entries;
    QString m_archivePath;
    QString m_password;
    std::unique_ptr<ZipReader> m_reader;
    void* m_handle = nullptr; // minizip's, for writing
    std::unique_ptr<char[]> m_buffer;

    QHash<QString, int> m_indexes; // of the first entry of each name, so that thousands are not searched one by one
    quint64 m_contentSize = 0;
    quint64 m_writtenEntries = 0;
    QString m_roomFor; // the folder that was found to have room for it
    Failure m_failure = NoFailure;
    Observer m_observer; // not copied
};
