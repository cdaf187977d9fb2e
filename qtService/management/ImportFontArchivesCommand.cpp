#include "qtService/management/ImportFontArchivesCommand.h"

#include "qtService/management/ExtractFontArchiveCommand.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QScopeGuard>

#include <limits>

namespace {

constexpr qint64 pieceSize = 0x100000;
constexpr qint64 progressUnit = 1024;
// Fonts shrink to a half or a third; what shrinks to a hundredth is made to fill a disk.
constexpr quint64 largestRatio = 100;
constexpr quint64 harmlessSize = 64 * 1024 * 1024;
constexpr int mostEntries = 200000;

ImportFontArchivesCommand::Error errorOf(ZipArchive::Failure failure)
{
    switch (failure) {
    case ZipArchive::Unreadable:
        return ImportFontArchivesCommand::NoArchive;
    case ZipArchive::Unsafe:
        return ImportFontArchivesCommand::Unsafe;
    case ZipArchive::Encrypted:
        return ImportFontArchivesCommand::Encrypted;
    case ZipArchive::Damaged:
        return ImportFontArchivesCommand::Damaged;
    case ZipArchive::NoRoom:
        return ImportFontArchivesCommand::NoRoom;
    default:
        return ImportFontArchivesCommand::NotWritten;
    }
}

bool isTooLarge(const ZipArchive& archive)
{
    const auto packed = quint64(QFileInfo(archive.archivePath()).size());
    return archive.entries().size() > mostEntries ||
           (archive.contentSize() > harmlessSize && archive.contentSize() / largestRatio > packed);
}

bool isWholeIn(const ZipArchive& archive, const QString& folder)
{
    const QStringList entries = archive.entries();
    return std::all_of(entries.begin(), entries.end(), [&folder](const QString& entry) {
        return QFileInfo::exists(folder + QLatin1Char('/') + ZipArchive::pathInside(entry));
    });
}

} // namespace

ImportFontArchivesCommand::ImportFontArchivesCommand(const QStringList& archivePaths, const QString& archivesFolder)
    : m_archivePaths(archivePaths)
    , m_folder(archivesFolder)
{
}

ImportFontArchivesCommand::~ImportFontArchivesCommand()
{
    waitForFinished();
}

bool ImportFontArchivesCommand::isArchive(const QString& path)
{
    const QFileInfo info(path);
    return info.suffix().compare(QLatin1String("zip"), Qt::CaseInsensitive) == 0 && info.isFile();
}

QList<ImportFontArchivesCommand::Result> ImportFontArchivesCommand::results() const
{
    QReadLocker locker(&m_lock);
    return m_results;
}

void ImportFontArchivesCommand::operator()()
{
    const auto tell = qScopeGuard([this] { emit ended(); });
    if (state() != Cancelled)
        run();
}

void ImportFontArchivesCommand::run()
{
    setState(Running);
    quint64 total = 0;
    for (const QString& path : m_archivePaths) {
        ZipArchive archive(path, QString());
        if (archive.open(ZipArchive::Read) && !isTooLarge(archive))
            total += archive.contentSize() + quint64(QFileInfo(path).size());
        if (state() == Cancelled)
            return;
    }
    setProgressTotal(int(qBound<quint64>(1, total / progressUnit, std::numeric_limits<int>::max())));

    bool imported = false;
    for (const QString& path : m_archivePaths) {
        emit currentArchiveChanged(path);
        Result result;
        result.archivePath = path;
        if (!import(path, &result))
            return; // cancelled
        if (result.error != NoError)
            qWarning("E_1_ The archive \"%s\" is refused: error %d", qUtf8Printable(path), int(result.error));
        imported = imported || result.error == NoError;
        QWriteLocker locker(&m_lock);
        m_results.append(result);
    }
    setState(imported ? Finished : Failed);
}

// False when it was cancelled meanwhile.
bool ImportFontArchivesCommand::import(const QString& archivePath, Result* result)
{
    ZipArchive archive(archivePath, QString());
    if (!archive.open(ZipArchive::Read)) {
        result->error = NoArchive;
        return true;
    }
    if (isTooLarge(archive)) {
        result->error = TooLarge;
        return true;
    }
    QFile file(archivePath);
    QCryptographicHash hash(QCryptographicHash::Sha1);
    if (!file.open(QIODevice::ReadOnly)) {
        result->error = NoArchive;
        return true;
    }
    while (!file.atEnd()) {
        const QByteArray piece = file.read(pieceSize);
        if (piece.isEmpty())
            break;
        hash.addData(piece);
        count(piece.size());
        if (state() == Cancelled)
            return false;
    }
    const QString known = m_folder.folderOf(hash.result());
    if (!known.isEmpty() && isWholeIn(archive, known)) {
        count(qint64(archive.contentSize()));
        result->folder = known;
        return true;
    }

    const QString unpacked = m_folder.createUnpackingFolder();
    if (unpacked.isEmpty()) {
        result->error = NotWritten;
        return true;
    }
    auto clearAway = qScopeGuard([&unpacked] { QDir(unpacked).removeRecursively(); });
    result->error = unpack(&archive, unpacked);
    if (state() == Cancelled)
        return false;
    if (result->error != NoError)
        return true;
    if (ExtractFontArchiveCommand::markFontsAsDownloaded(unpacked) == 0) {
        result->error = NoFonts;
        return true;
    }
    if (state() == Cancelled)
        return false;
    result->folder = m_folder.adopt(unpacked, archivePath, hash.result());
    if (result->folder.isEmpty())
        result->error = NotWritten;
    else
        clearAway.dismiss();
    return true;
}

ImportFontArchivesCommand::Error ImportFontArchivesCommand::unpack(ZipArchive* archive, const QString& folder)
{
    archive->setObserver([this](qint64 bytes) {
        count(bytes);
        return state() != Cancelled;
    });
    const QStringList entries = archive->entries();
    for (const QString& entry : entries) {
        if (!archive->extract(entry, folder, false))
            return errorOf(archive->failure());
        if (state() == Cancelled)
            break;
    }
    return NoError;
}

void ImportFontArchivesCommand::count(qint64 bytes)
{
    m_bytesDone += bytes;
    setProgressCurrent(int(qMin<qint64>(m_bytesDone / progressUnit, progressTotal())));
}
