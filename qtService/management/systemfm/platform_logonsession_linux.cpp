#include "qtService/management/systemfm/LogonSession.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QSaveFile>

#include <sys/stat.h>
#include <unistd.h>

namespace kerval::systemfm {

namespace {

constexpr int idSize = 16;

bool makePrivateFolder(const QString& path)
{
    const QByteArray name = QFile::encodeName(path);
    if (::mkdir(name.constData(), 0700) != 0 && errno != EEXIST)
        return false;
    // lstat: a link that somebody planted in the shared temporary folder is not followed.
    struct stat status = {};
    return ::lstat(name.constData(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == ::geteuid();
}

QByteArray readWhole(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.read(4096) : QByteArray();
}

bool writeWhole(const QString& path, const QByteArray& content)
{
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.commit();
}

QByteArray randomId()
{
    QByteArray id(idSize, '\0');
    for (char& byte : id)
        byte = char(QRandomGenerator::system()->bounded(256));
    return id;
}

} // namespace

LogonSession LogonSession::current()
{
    return open(QFile::decodeName(qgetenv("XDG_RUNTIME_DIR")), QDir::tempPath(),
                readWhole(QStringLiteral("/proc/sys/kernel/random/boot_id")).trimmed());
}

LogonSession LogonSession::open(const QString& runtimeFolder, const QString& temporaryFolder, const QByteArray& bootId)
{
    LogonSession session;
    if (QDir::isAbsolutePath(runtimeFolder) && makePrivateFolder(runtimeFolder) &&
        session.useFolder(QDir::cleanPath(runtimeFolder) + QStringLiteral("/kerval")))
        return session;

    const QString folder = temporaryFolder + QStringLiteral("/kerval-%1").arg(::geteuid());
    if (!makePrivateFolder(folder) || ::chmod(QFile::encodeName(folder).constData(), 0700) != 0) {
        qWarning().noquote() << QStringLiteral("W_0_ no folder for this logon session:") << folder;
        return session;
    }
    const QString bootFile = folder + QStringLiteral("/boot");
    if (readWhole(bootFile) != bootId) {
        QDir(folder + QStringLiteral("/kerval")).removeRecursively();
        if (!writeWhole(bootFile, bootId))
            return session;
    }
    session.useFolder(folder + QStringLiteral("/kerval"));
    return session;
}

bool LogonSession::useFolder(const QString& folder)
{
    if (!makePrivateFolder(folder))
        return false;
    const QString idFile = folder + QStringLiteral("/session");
    QByteArray id = readWhole(idFile);
    if (id.size() != idSize) {
        id = randomId();
        if (!writeWhole(idFile, id))
            return false;
    }
    m_folder = folder;
    m_id = id;
    return true;
}

} // namespace kerval::systemfm
