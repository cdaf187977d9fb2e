#include "qtService/management/ArchivesFolder.h"

#include "qtService/app/core/SettingsFolders.h"

#include <QDir>
#include <QDirIterator>
#include <QSaveFile>
#include <QTemporaryDir>

namespace {

const QString recordName = QStringLiteral(".kerval-archive");
const QString unpackingPrefix = QStringLiteral(".unpacking-");
// Leaves room for a number, in bytes that every file system takes.
constexpr int longestName = 200;

// The archive's name as one that any system takes for a folder, and that no search passes over as hidden.
QString folderName(const QString& archivePath)
{
    QString name = QFileInfo(archivePath).completeBaseName().normalized(QString::NormalizationForm_C);
    for (QChar& letter : name) {
        if (letter.unicode() < 0x20 || QStringLiteral("/\\:*?\"<>|").contains(letter))
            letter = QLatin1Char('_');
    }
    while (name.toUtf8().size() > longestName)
        name.chop(name.at(name.size() - 1).isLowSurrogate() ? 2 : 1);
    int begin = 0;
    while (begin < name.size() && (name.at(begin) == QLatin1Char('.') || name.at(begin).isSpace()))
        ++begin;
    int end = name.size();
    while (end > begin && (name.at(end - 1) == QLatin1Char('.') || name.at(end - 1).isSpace()))
        --end;
    name = name.mid(begin, end - begin);
    return name.isEmpty() ? QStringLiteral("archive") : name;
}

bool writeRecord(const QString& folder, const QByteArray& contentHash)
{
    QSaveFile file(folder + QLatin1Char('/') + recordName);
    return file.open(QIODevice::WriteOnly) && file.write(contentHash.toHex()) > 0 && file.commit();
}

QByteArray readRecord(const QString& folder)
{
    constexpr int longestHash = 128;
    QFile file(folder + QLatin1Char('/') + recordName);
    return file.open(QIODevice::ReadOnly) ? QByteArray::fromHex(file.read(longestHash)) : QByteArray();
}

// Moves what the other folder lacks; what it has stays, with all that was written beside it.
bool moveMissing(const QString& from, const QString& to)
{
    bool moved = true;
    QDirIterator files(from, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString file = files.next();
        const QString target = to + file.mid(from.size());
        if (QFileInfo::exists(target))
            continue;
        moved = QDir().mkpath(QFileInfo(target).path()) && QFile::rename(file, target) && moved;
    }
    return moved;
}

} // namespace

ArchivesFolder::ArchivesFolder(const QString& path)
    : m_path(path)
{
}

QString ArchivesFolder::userPath()
{
    const QString settings = krv::userSettingsFolder();
    return settings.isEmpty() ? QString() : settings + QStringLiteral("archives");
}

QString ArchivesFolder::folderOf(const QByteArray& contentHash) const
{
    const QStringList names = QDir(m_path).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString& name : names) {
        const QString folder = m_path + QLatin1Char('/') + name;
        if (readRecord(folder) == contentHash)
            return folder;
    }
    return QString();
}

QString ArchivesFolder::createUnpackingFolder() const
{
    if (m_path.isEmpty() || !QDir().mkpath(m_path))
        return QString();
    QTemporaryDir folder(m_path + QLatin1Char('/') + unpackingPrefix + QStringLiteral("XXXXXX"));
    folder.setAutoRemove(false);
    return folder.isValid() ? folder.path() : QString();
}

QString ArchivesFolder::freeFolder(const QString& archivePath) const
{
    const QString wanted = m_path + QLatin1Char('/') + folderName(archivePath);
    QString folder = wanted;
    for (int number = 2; QFileInfo::exists(folder); ++number)
        folder = QStringLiteral("%1 (%2)").arg(wanted).arg(number);
    return folder;
}

QString ArchivesFolder::adopt(const QString& unpacked, const QString& archivePath, const QByteArray& contentHash) const
{
    const QString known = folderOf(contentHash);
    if (!known.isEmpty()) {
        const bool moved = moveMissing(unpacked, known);
        QDir(unpacked).removeRecursively();
        return moved ? known : QString();
    }
    // The temporary folder is the user's alone; so is its place.
    const QString folder = freeFolder(archivePath);
    return writeRecord(unpacked, contentHash) && QDir().rename(unpacked, folder) ? folder : QString();
}

void ArchivesFolder::removeLeftovers() const
{
    const QStringList names =
        QDir(m_path).entryList({unpackingPrefix + QLatin1Char('*')}, QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot);
    for (const QString& name : names)
        QDir(m_path + QLatin1Char('/') + name).removeRecursively();
}
