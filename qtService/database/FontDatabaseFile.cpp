#include "qtService/database/FontDatabaseFile.h"

#include "qtService/database/ScopedConnection.h"

#include <QDateTime>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QSet>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>

namespace fontdatabasefile {

namespace {

// Reads as far as the file can be read; false when it ends in an error.
bool readPaths(const QSqlDatabase& database, const QString& order, QStringList& paths)
{
    QSqlQuery query(database);
    query.setForwardOnly(true);
    if (!query.exec(QStringLiteral("SELECT file_name FROM font ORDER BY id %1").arg(order)))
        return false;
    while (query.next())
        paths.append(query.value(0).toString());
    return !query.lastError().isValid();
}

QStringList cataloguedPaths(const QString& fileName)
{
    const ScopedConnection connection(fileName);
    QStringList paths;
    // A damaged page stops a reader; what lies behind it is reached from the other end.
    if (!readPaths(connection.database(), QStringLiteral("ASC"), paths))
        readPaths(connection.database(), QStringLiteral("DESC"), paths);
    return paths;
}

bool keepPaths(const QString& databaseFileName, const QStringList& paths)
{
    if (paths.isEmpty())
        return true;
    const QString listName = oldFontFilesName(databaseFileName);
    QStringList lines;
    QFile existing(listName);
    if (existing.open(QIODevice::ReadOnly))
        lines = QString::fromUtf8(existing.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QSet<QString> known(lines.cbegin(), lines.cend());
    for (const QString& path : paths) {
        // The list has a path on each line and ends at the first empty one.
        if (!path.isEmpty() && !path.contains(QLatin1Char('\n')) && !known.contains(path)) {
            known.insert(path);
            lines.append(path);
        }
    }
    QSaveFile file(listName);
    const QByteArray content = lines.join(QLatin1Char('\n')).toUtf8() + '\n';
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.commit();
}

QString suspicionName(const QString& fileName)
{
    return fileName + QStringLiteral(".suspect");
}

// Reads the whole file.
bool isSound(const QSqlDatabase& database)
{
    QSqlQuery query(database);
    return query.exec(QStringLiteral("PRAGMA quick_check(1)")) && query.next() &&
           query.value(0).toString() == QLatin1String("ok");
}

QString freeName(const QString& fileName, const QString& reason)
{
    const QString base = fileName + QLatin1Char('.') + reason + QLatin1Char('-') +
                         QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    QString name = base;
    for (int i = 2; QFileInfo::exists(name); ++i)
        name = base + QLatin1Char('-') + QString::number(i);
    return name;
}

} // namespace

void suspect(const QString& fileName)
{
    QFile mark(suspicionName(fileName));
    if (mark.exists() || !mark.open(QIODevice::WriteOnly))
        return;
    qWarning().noquote()
        << "U_ The catalogue of fonts seems to be damaged. It is checked when Kerval is started again.";
}

bool isDamage(const QString& nativeErrorCode)
{
    constexpr int corrupt = 11;
    constexpr int notADatabase = 26;
    const int primary = nativeErrorCode.toInt() & 0xff;
    return primary == corrupt || primary == notADatabase;
}

Condition inspect(const QString& fileName, const QStringList& fontColumns, int formatVersion)
{
    const QFileInfo info(fileName);
    if (!info.exists() || (info.isFile() && info.size() == 0))
        return Missing;

    const ScopedConnection connection(fileName);
    const QSqlDatabase database = connection.database();
    QSqlQuery query(database);
    // Reads the header and the schema, where most damage shows.
    if (!database.isOpen() || !query.exec(QStringLiteral("SELECT COUNT(*) FROM sqlite_master")) || !query.next()) {
        const QString code =
            query.lastError().isValid() ? query.lastError().nativeErrorCode() : database.lastError().nativeErrorCode();
        return isDamage(code) ? Damaged : Unreadable;
    }
    if (query.value(0).toInt() == 0)
        return Missing;
    query.exec(QStringLiteral("PRAGMA user_version"));
    const int version = query.next() ? query.value(0).toInt() : 0;
    query.finish();

    const QSqlRecord fields = database.record(QStringLiteral("font"));
    if (fields.isEmpty())
        return Foreign;
    const bool complete = std::all_of(fontColumns.cbegin(), fontColumns.cend(),
                                      [&](const QString& column) { return fields.contains(column); });
    if (!complete || (version != formatVersion && version != 0))
        return Outdated;
    if (!QFile::exists(suspicionName(fileName)))
        return Current;
    if (!isSound(database))
        return Damaged;
    QFile::remove(suspicionName(fileName));
    return Current;
}

QString setAside(const QString& fileName, Condition condition)
{
    if (!keepPaths(fileName, cataloguedPaths(fileName)))
        qWarning().noquote() << "E_1_ Cannot write" << oldFontFilesName(fileName);
    const QString reason = condition == Damaged ? QStringLiteral("damaged") : QStringLiteral("old");
    const QString target = freeName(fileName, reason);
    if (!QFile::rename(fileName, target)) {
        qWarning().noquote() << "E_1_ Failed to delete the old database file" << fileName;
        return QString();
    }
    QFile::remove(suspicionName(fileName));
    // A journal left behind would be applied to the new file.
    for (const QString& suffix : {QStringLiteral("-wal"), QStringLiteral("-shm"), QStringLiteral("-journal")})
        QFile::rename(fileName + suffix, target + suffix);
    qWarning().noquote() << (condition == Damaged ? "U_ The catalogue of fonts was damaged. It was kept as"
                                                  : "U_ The catalogue of fonts has another format. It was kept as")
                         << target << "and its fonts are added again by the next scan.";
    return target;
}

QString oldFontFilesName(const QString& databaseFileName)
{
    return QFileInfo(databaseFileName).dir().filePath(QStringLiteral("olddbfontfiles.ev"));
}

} // namespace fontdatabasefile
