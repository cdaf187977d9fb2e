#include "qtService/management/ZipArchive.h"

#include "qtService/management/ZipReader.h"

#include <QDataStream>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStorageInfo>
#include <QtEndian>

#include <limits>
#include <minizip/zip.h>

namespace {

constexpr int bufferSize = 0x100000;
// Stays free on the disk, so that the databases can still be written.
constexpr qint64 roomForOthers = 64 * 1024 * 1024;
constexpr uLong utf8Names = 1 << 11;
constexpr uLong madeByUnix = (3 << 8) | 45;

bool isFolderName(const QString& entryName)
{
    return entryName.endsWith(QLatin1Char('/')) || entryName.endsWith(QLatin1Char('\\'));
}

// False when a symbolic link that is already there leads the folder out of the destination.
bool staysInside(const QString& folder, const QString& destinationFolder)
{
    QFileInfo existing(folder);
    while (!existing.exists() && !existing.isSymLink())
        existing.setFile(existing.path());
    const QString destination = QFileInfo(destinationFolder).canonicalFilePath();
    const QString real = existing.canonicalFilePath();
    return real == destination || real.startsWith(destination + QLatin1Char('/'));
}

// A folder cannot be made where an earlier entry of the archive is a file.
bool isBlockedByFile(const QString& folder, const QString& destinationFolder)
{
    QFileInfo existing(folder);
    while (!existing.exists() && existing.filePath().size() > destinationFolder.size())
        existing.setFile(existing.path());
    return existing.isFile();
}

tm_zip zipTime(const QDateTime& time)
{
    const QDate date = qMax(time.date(), QDate(1980, 1, 1));
    tm_zip zip;
    zip.tm_sec = uInt(time.time().second());
    zip.tm_min = uInt(time.time().minute());
    zip.tm_hour = uInt(time.time().hour());
    zip.tm_mday = uInt(date.day());
    zip.tm_mon = uInt(date.month() - 1);
    zip.tm_year = uInt(date.year());
    return zip;
}

uLong unixAttributes(QFile::Permissions permissions)
{
    const uLong bits = uLong(permissions);
    const uLong mode = ((bits & 0x7000) >> 6) | ((bits & 0x70) >> 1) | (bits & 0x7);
    constexpr uLong regularFile = 0100000;
    return (regularFile | mode) << 16;
}

// minizip writes the records that count in 64 bits for large archives only, not for many entries: puts them in front of
// the end record, which is the last thing in the file.
bool writeLongEntryCount(const QString& archivePath, quint64 entries)
{
    constexpr int endSize = 22;
    constexpr int locatorSize = 20;
    QFile file(archivePath);
    if (!file.open(QIODevice::ReadWrite) || !file.seek(file.size() - endSize - locatorSize))
        return false;
    const bool isLarge = file.read(locatorSize).startsWith(QByteArrayLiteral("PK\x06\x07"));
    const qint64 position = file.pos();
    const QByteArray end = file.read(endSize);
    if (isLarge || !end.startsWith(QByteArrayLiteral("PK\x05\x06")))
        return isLarge;
    const auto longFrom = [&end](int offset) { return quint64(qFromLittleEndian<quint32>(end.constData() + offset)); };

    QByteArray records;
    QDataStream stream(&records, QIODevice::WriteOnly);
    stream.setByteOrder(QDataStream::LittleEndian);
    constexpr quint16 version = 45;
    stream << quint32(0x06064b50) << quint64(44) << version << version << quint32(0) << quint32(0) << entries << entries
           << longFrom(12) << longFrom(16);
    stream << quint32(0x07064b50) << quint32(0) << quint64(position) << quint32(1);
    records += end;
    return file.seek(position) && file.write(records) == records.size() && file.flush();
}

} // namespace

ZipArchive::ZipArchive(const QString& archivePath, const QString& password)
    : m_archivePath(archivePath)
    , m_password(password)
{
}

ZipArchive::ZipArchive(const ZipArchive& other)
    : m_archivePath(other.m_archivePath)
    , m_password(other.m_password)
{
}

ZipArchive& ZipArchive::operator=(const ZipArchive& other)
{
    if (this != &other) {
        close();
        m_archivePath = other.m_archivePath;
        m_password = other.m_password;
    }
    return *this;
}

ZipArchive::~ZipArchive()
{
    close();
}

QString ZipArchive::pathInside(const QString& entryName)
{
    QString name = entryName;
    name.replace(QLatin1Char('\\'), QLatin1Char('/'));
    const bool hasDrive = name.size() > 1 && name.at(1) == QLatin1Char(':');
    if (name.startsWith(QLatin1Char('/')) || hasDrive || name.contains(QChar(QChar::Null)))
        return QString();
    name = QDir::cleanPath(name);
    if (name == QLatin1String(".") || name == QLatin1String("..") || name.startsWith(QLatin1String("../")))
        return QString();
    return name;
}

bool ZipArchive::fail(Failure failure)
{
    m_failure = failure;
    return false;
}

bool ZipArchive::open(int mode)
{
    close();
    m_failure = NoFailure;
    const bool opened = mode == Read ? openForReading() : mode == Write ? openForWriting() : false;
    if (!opened) {
        close();
        return false;
    }
    m_mode = mode;
    if (mode == Write)
        m_buffer = std::make_unique<char[]>(bufferSize);
    return true;
}

bool ZipArchive::openForReading()
{
    m_reader = std::make_unique<ZipReader>();
    if (!m_reader->open(m_archivePath))
        return fail(Unreadable);
    const QList<ZipReader::Entry>& entries = m_reader->entries();
    for (int i = 0; i < entries.size(); ++i) {
        const ZipReader::Entry& entry = entries.at(i);
        if (entry.name.isEmpty())
            continue;
        m_entries.append(entry.name);
        if (!m_indexes.contains(entry.name))
            m_indexes.insert(entry.name, i);
        // Saturates: a hostile archive may claim anything.
        m_contentSize += qMin(entry.size, std::numeric_limits<quint64>::max() - m_contentSize);
    }
    return true;
}

bool ZipArchive::openForWriting()
{
    if (QFile::exists(m_archivePath) && !QFile::remove(m_archivePath))
        return fail(NotWritten);
    m_handle = zipOpen64(QFile::encodeName(m_archivePath).constData(), APPEND_STATUS_CREATE);
    return m_handle;
}

bool ZipArchive::close()
{
    bool closed = !m_handle || zipClose(m_handle, nullptr) == ZIP_OK;
    constexpr quint64 longCount = 0xffff;
    if (closed && m_mode == Write && m_writtenEntries >= longCount)
        closed = writeLongEntryCount(m_archivePath, m_writtenEntries);
    m_handle = nullptr;
    m_reader.reset();
    m_mode = Closed;
    m_buffer.reset();
    m_entries.clear();
    m_indexes.clear();
    m_contentSize = 0;
    m_writtenEntries = 0;
    m_roomFor.clear();
    return closed;
}

bool ZipArchive::extract(const QString& entryName, const QString& destinationFolder, bool withChildren)
{
    m_failure = NoFailure;
    if (m_mode != Read || !QDir().mkpath(destinationFolder))
        return fail(NotWritten);
    if (!hasRoom(destinationFolder))
        return fail(NoRoom);

    QStringList names(entryName);
    if (withChildren && isFolderName(entryName)) {
        for (const QString& entry : qAsConst(m_entries))
            if (entry.startsWith(entryName))
                names.append(entry);
        names.removeDuplicates();
    }
    for (const QString& name : qAsConst(names)) {
        const int index = m_indexes.value(name, -1);
        if (index >= 0 && !extractEntry(index, destinationFolder)) {
            qWarning("E_0_ \"%s\" could not be unpacked from \"%s\"", qUtf8Printable(name),
                     qUtf8Printable(m_archivePath));
            return false;
        }
    }
    return true;
}

bool ZipArchive::hasRoom(const QString& destinationFolder)
{
    if (m_roomFor == destinationFolder)
        return true;
    const QStorageInfo storage(destinationFolder);
    if (storage.isValid() && m_contentSize > quint64(qMax<qint64>(0, storage.bytesAvailable() - roomForOthers))) {
        qWarning("E_0_ No room for the content of \"%s\"", qUtf8Printable(m_archivePath));
        return false;
    }
    m_roomFor = destinationFolder;
    return true;
}

bool ZipArchive::extractEntry(int index, const QString& destinationFolder)
{
    const ZipReader::Entry& entry = m_reader->entries().at(index);
    const QString inside = pathInside(entry.name);
    if (inside.isEmpty())
        return fail(Unsafe);
    const QString target = destinationFolder + QLatin1Char('/') + inside;
    const bool isFolder = isFolderName(entry.name);
    const QString folder = isFolder ? target : QFileInfo(target).path();
    if (!staysInside(folder, destinationFolder))
        return fail(Unsafe);
    if (!QDir().mkpath(folder))
        return fail(isBlockedByFile(folder, destinationFolder) ? Unsafe : NotWritten);
    if (isFolder)
        return true;

    QFile file(target);
    file.remove();
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        return fail(QFileInfo(target).isDir() ? Unsafe : NotWritten);
    const ZipReader::Outcome outcome = m_reader->extract(entry, &file, m_observer);
    if (outcome == ZipReader::Extracted && file.flush())
        return true;
    file.remove();
    switch (outcome) {
    case ZipReader::Encrypted:
        return fail(Encrypted);
    case ZipReader::Damaged:
        return fail(Damaged);
    case ZipReader::Interrupted:
        return fail(Interrupted);
    case ZipReader::Extracted:
    case ZipReader::NotWritten:
        break;
    }
    return fail(NotWritten);
}

bool ZipArchive::addFile(const QString& filePath, const QString& entryName)
{
    const QFileInfo info(filePath);
    if (m_mode != Write || !info.isFile())
        return false;
    QFile file(filePath);
    if (!file.open(QIODevice::ReadOnly))
        return false;

    zip_fileinfo zipInfo = {};
    zipInfo.tmz_date = zipTime(info.lastModified());
    zipInfo.external_fa = unixAttributes(info.permissions());
    const QByteArray name = (entryName.isEmpty() ? info.fileName() : entryName).toUtf8();
    // Near the limit already: deflate may add a little to what it cannot shrink.
    const int zip64 = info.size() >= 0xf0000000LL;
    if (zipOpenNewFileInZip4_64(m_handle, name.constData(), &zipInfo, nullptr, 0, nullptr, 0, nullptr, Z_DEFLATED,
                                Z_DEFAULT_COMPRESSION, 0, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY, nullptr, 0, madeByUnix,
                                utf8Names, zip64) != ZIP_OK)
        return false;
    qint64 read = 0;
    bool added = true;
    while (added && (read = file.read(m_buffer.get(), bufferSize)) > 0)
        added = zipWriteInFileInZip(m_handle, m_buffer.get(), unsigned(read)) == ZIP_OK;
    ++m_writtenEntries;
    return zipCloseFileInZip(m_handle) == ZIP_OK && added && read == 0;
}
