#include "qtService/database/UserDatabaseSalvage.h"

#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QStringList>
#include <QTemporaryDir>
#include <QVariant>
#include <QtDebug>

namespace {

const char* const tables[] = {"font",        "group",   "note",    "user_defined_family", "belongs_to", "tag",
                              "tagged_with", "project", "used_in", "properties"};

const char* const corrections[] = {
    "DELETE FROM font WHERE typeof(filehash) <> 'text' OR length(filehash) <> 42",
    "DELETE FROM `group` WHERE typeof(name) <> 'text'",
    "DELETE FROM belongs_to WHERE id_font NOT IN (SELECT id FROM font) OR id_group NOT IN (SELECT id FROM `group`)",
    "UPDATE `group` SET id_parent = 0 WHERE id_parent NOT IN (SELECT id FROM `group`)",
    "UPDATE font SET id_note = 0 WHERE id_note NOT IN (SELECT id FROM note)",
    "UPDATE font SET id_user_defined_family = 0\n"
    "WHERE id_user_defined_family NOT IN (SELECT id FROM user_defined_family)",
};

constexpr char connectionName[] = "user data to salvage";

// A copy of the damaged file, open as long as the object lives.
class DamagedCopy
{
public:
    explicit DamagedCopy(const QString& fileName)
    {
        const QString copy = m_folder.filePath(QStringLiteral("user.db"));
        for (const char* suffix : {"", "-wal", "-journal"})
            QFile::copy(fileName + QLatin1String(suffix), copy + QLatin1String(suffix));
        auto database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QLatin1String(connectionName));
        database.setDatabaseName(copy);
        database.open();
        // Or a file that was cut off is not read at all.
        QSqlQuery(database).exec(QStringLiteral("PRAGMA writable_schema = ON"));
    }
    ~DamagedCopy() { QSqlDatabase::removeDatabase(QLatin1String(connectionName)); }
    Q_DISABLE_COPY(DamagedCopy)

    QSqlDatabase database() const { return QSqlDatabase::database(QLatin1String(connectionName), false); }

private:
    QTemporaryDir m_folder;
};

QStringList columnsOf(const QSqlDatabase& database, const QString& table)
{
    QStringList columns;
    QSqlQuery query(database);
    query.exec(QStringLiteral("PRAGMA table_info(`%1`)").arg(table));
    while (query.next())
        columns.append(query.value(1).toString());
    return columns;
}

bool takeOver(const QString& table, const QSqlDatabase& damaged, const QSqlDatabase& fresh, int* rows)
{
    constexpr int constraint = 19;
    QStringList columns;
    const QStringList known = columnsOf(fresh, table);
    for (const QString& column : columnsOf(damaged, table)) {
        if (known.contains(column))
            columns.append(column);
    }
    if (columns.isEmpty())
        return true;
    const QString list = QLatin1Char('`') + columns.join(QStringLiteral("`,`")) + QLatin1Char('`');
    QStringList marks;
    for (int i = 0; i < columns.size(); ++i)
        marks.append(QStringLiteral("?"));
    QSqlQuery insert(fresh);
    insert.prepare(
        QStringLiteral("INSERT OR IGNORE INTO `%1` (%2) VALUES (%3)").arg(table, list, marks.join(QLatin1Char(','))));
    for (const char* order : {"ASC", "DESC"}) {
        QSqlQuery read(damaged);
        read.setForwardOnly(true);
        if (!read.exec(QStringLiteral("SELECT %1 FROM `%2` ORDER BY rowid %3").arg(list, table, QLatin1String(order))))
            continue;
        while (read.next()) {
            for (int i = 0; i < columns.size(); ++i)
                insert.bindValue(i, read.value(i));
            if (insert.exec())
                *rows += qMax(0, insert.numRowsAffected());
            else if ((insert.lastError().nativeErrorCode().toInt() & 0xff) != constraint)
                return false;
        }
        if (!read.lastError().isValid())
            break;
    }
    return true;
}

} // namespace

bool salvageUserData(const QString& damagedFileName, const QSqlDatabase& fresh, int* rows)
{
    *rows = 0;
    const DamagedCopy damaged(damagedFileName);
    for (const char* table : tables) {
        if (!takeOver(QLatin1String(table), damaged.database(), fresh, rows))
            return false;
    }
    for (const char* correction : corrections) {
        QSqlQuery query(fresh);
        if (!query.exec(QLatin1String(correction))) {
            qWarning().noquote() << "E_0_user.db: Last error:" << query.lastError().text();
            return false;
        }
    }
    return true;
}
