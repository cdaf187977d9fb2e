#include "qtService/database/UserDatabaseFile.h"

#include "qtService/database/FontDatabaseFile.h"
#include "qtService/database/ScopedConnection.h"
#include "qtService/database/UserDatabaseSalvage.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QStringList>
#include <QVariant>
#include <QtDebug>

#include <functional>

namespace {

const char* const schema[] = {
    "CREATE TABLE 'belongs_to' ('id_font' INTEGER NOT NULL ,'id_group' INTEGER NOT NULL ,PRIMARY KEY ('id_font', "
    "'id_group'));",
    "CREATE TABLE 'font' ('id' INTEGER PRIMARY KEY  AUTOINCREMENT  NOT NULL  UNIQUE ,'ranking' INTEGER ,'id_note' "
    "INTEGER ,'filehash' CHAR(42) NOT NULL UNIQUE ,`hidden` BOOL DEFAULT FALSE ,`id_user_defined_family` INTEGER "
    "DEFAULT 0);",
    "CREATE TABLE 'group' ('id' INTEGER PRIMARY KEY  AUTOINCREMENT  NOT NULL  UNIQUE ,'name' CHAR(64) ,'id_parent' "
    "INTEGER);",
    "CREATE TABLE 'note' ('id' INTEGER PRIMARY KEY  AUTOINCREMENT  NOT NULL  UNIQUE ,'text' CHAR(4096));",
    "CREATE TABLE `user_defined_family`\n(`id` INTEGER PRIMARY KEY  AUTOINCREMENT  NOT NULL  UNIQUE ,`family_name` "
    "VARCHAR);",
    "CREATE TABLE 'project' ('id' INTEGER PRIMARY KEY  AUTOINCREMENT  NOT NULL  UNIQUE ,'name' CHAR(64) NOT NULL "
    ",'filename' CHAR(1024) NOT NULL );",
    "CREATE TABLE 'tag' ('id' INTEGER PRIMARY KEY  AUTOINCREMENT  NOT NULL  UNIQUE ,'text' CHAR(64) NOT NULL );",
    "CREATE TABLE 'tagged_with' ('id_font' INTEGER NOT NULL ,'id_tag' INTEGER NOT NULL ,PRIMARY KEY ('id_font', "
    "'id_tag'));",
    "CREATE TABLE 'used_in' ('id_font' INTEGER NOT NULL ,'id_project' INTEGER NOT NULL ,PRIMARY KEY ('id_font', "
    "'id_project'));",
    "CREATE TABLE 'properties' ('last_sync' DATETIME PRIMARY KEY  NOT NULL )",
    "CREATE TRIGGER on_delete_tag AFTER DELETE ON tag\nBEGIN\n    DELETE FROM tagged_with WHERE id_tag=old.id;\nEND",
    "CREATE TRIGGER on_delete_project AFTER DELETE ON project\nBEGIN\n    DELETE FROM used_in WHERE "
    "id_project=old.id;\nEND",
    "CREATE TRIGGER on_delete_used_in AFTER DELETE ON used_in\nBEGIN\n    DELETE FROM project WHERE id IN (SELECT "
    "project.id\nFROM project LEFT OUTER JOIN used_in\nON project.id=used_in.id_project\nGROUP BY project.id\nHAVING "
    "COUNT(used_in.id_project) = 0);\nEND",
    "CREATE TRIGGER on_delete_group AFTER DELETE ON `group`\nBEGIN\n    DELETE FROM belongs_to WHERE "
    "id_group=old.id;\n    DELETE FROM `group` WHERE id_parent=old.id;\nEND",
    "CREATE TRIGGER on_delete_font AFTER DELETE ON `font`\nBEGIN\n    DELETE FROM note WHERE id = old.id_note AND NOT "
    "EXISTS (SELECT id_note\nFROM `font`\nWHERE id_note=old.id_note);\n    DELETE FROM user_defined_family WHERE id = "
    "old.id_user_defined_family AND NOT EXISTS (SELECT id_user_defined_family\nFROM `font`\nWHERE "
    "id_user_defined_family=old.id_user_defined_family);\n    DELETE FROM belongs_to WHERE id_font NOT IN (SELECT id "
    "FROM font);\n    DELETE FROM used_in WHERE id_font NOT IN (SELECT id FROM font);\n    DELETE FROM tagged_with "
    "WHERE id_font NOT IN (SELECT id FROM font);\nEND",
};

// A step is skipped when what it makes is there already, or what it drops is gone: files of those versions exist that
// were upgraded half way by a program that did so outside a transaction.
struct UpgradeStep
{
    int version;
    const char* statement;
    const char* unneeded; // a query that answers 1 when the step has nothing to do
};

const UpgradeStep upgradeSteps[] = {
    {4, "ALTER TABLE `font`\nADD COLUMN `hidden` BOOL DEFAULT FALSE",
     "SELECT COUNT(*) FROM pragma_table_info('font') WHERE name = 'hidden'"},
    {5, "ALTER TABLE `font`\nADD COLUMN `id_user_defined_family` INTEGER DEFAULT 0;",
     "SELECT COUNT(*) FROM pragma_table_info('font') WHERE name = 'id_user_defined_family'"},
    {5,
     "CREATE TABLE `user_defined_family`\n(`id` INTEGER PRIMARY KEY  AUTOINCREMENT  NOT NULL  UNIQUE ,`family_name` "
     "VARCHAR);",
     "SELECT COUNT(*) FROM sqlite_master WHERE type = 'table' AND name = 'user_defined_family'"},
    {6, "drop trigger on_insert_font;",
     "SELECT COUNT(*) = 0 FROM sqlite_master WHERE type = 'trigger' AND name = 'on_insert_font'"},
    {6, "drop index index_id_orig_font;",
     "SELECT COUNT(*) = 0 FROM sqlite_master WHERE type = 'index' AND name = 'index_id_orig_font'"},
};

bool run(const QSqlDatabase& database, const QString& statement)
{
    QSqlQuery query(database);
    if (query.exec(statement))
        return true;
    qWarning().noquote() << "E_0_ user.db: Last error:" << query.lastError().text() << "last query:" << statement;
    return false;
}

int number(const QSqlDatabase& database, const QString& statement, int fallback)
{
    QSqlQuery query(database);
    return query.exec(statement) && query.next() ? query.value(0).toInt() : fallback;
}

bool inTransaction(const QSqlDatabase& database, const std::function<bool()>& work)
{
    if (!run(database, QStringLiteral("BEGIN IMMEDIATE")))
        return false;
    if (work() && run(database, QStringLiteral("COMMIT")))
        return true;
    run(database, QStringLiteral("ROLLBACK"));
    return false;
}

// What another program holds is mostly let go soon; a start without the user's data lasts a whole session.
constexpr char waiting[] = "QSQLITE_BUSY_TIMEOUT=30000";

// The journals first: one left behind by a kill in between would be replayed into the next file of the name.
bool moveWithJournals(const QString& from, const QString& to)
{
    for (const char* suffix : {"-wal", "-shm", "-journal"}) {
        const QString journal = from + QLatin1String(suffix);
        if (QFile::exists(journal) && !QFile::rename(journal, to + QLatin1String(suffix)))
            return false;
    }
    return QFile::rename(from, to);
}

} // namespace

UserDatabaseFile::UserDatabaseFile(const QString& fileName)
    : m_fileName(fileName)
    , m_fileToSalvage(fileName + QStringLiteral(".damaged"))
{
}

QString UserDatabaseFile::setAsideFile() const
{
    return m_setAsideFile;
}

int UserDatabaseFile::salvagedRows() const
{
    return m_salvagedRows;
}

bool UserDatabaseFile::prepare()
{
    if (QFileInfo(m_fileName).size() > 0) {
        const Condition condition = examine();
        if (condition == Condition::Unreadable)
            return false;
        // What was damaged before was taken over, or this file would have no content.
        if (QFileInfo(m_fileName).size() > 0 && QFile::exists(m_fileToSalvage))
            giveDate();
        if (condition == Condition::Damaged && !setAside())
            return false;
    }
    // An empty file is what a start leaves that was killed before the schema was committed.
    const bool isNew = QFileInfo(m_fileName).size() == 0;

    const ScopedConnection connection(m_fileName, QLatin1String(waiting));
    if (!connection.database().isOpen()) {
        qWarning().noquote() << "E_0_ FAILED to open:" << m_fileName << connection.database().lastError().text();
        return false;
    }
    if (isNew)
        return create(connection.database());
    const int version = number(connection.database(), QStringLiteral("PRAGMA user_version"), 0);
    return version < 1 || version >= CurrentVersion || upgrade(connection.database(), version);
}

UserDatabaseFile::Condition UserDatabaseFile::examine() const
{
    // SQLite takes a file shorter than its header for a new one and would write over what it holds.
    if (QFileInfo(m_fileName).size() < 100 && QFileInfo(m_fileName).isFile())
        return Condition::Damaged;
    const ScopedConnection connection(m_fileName, QLatin1String(waiting));
    QSqlQuery query(connection.database());
    if (!connection.database().isOpen() || !query.exec(QStringLiteral("PRAGMA quick_check"))) {
        const QSqlError error = connection.database().isOpen() ? query.lastError() : connection.database().lastError();
        qWarning().noquote() << "E_0_ FAILED to open:" << m_fileName << error.text();
        // Anything else (rights, a full disk, a lock) says nothing of the content.
        return fontdatabasefile::isDamage(error.nativeErrorCode()) ? Condition::Damaged : Condition::Unreadable;
    }
    bool damaged = false;
    while (query.next()) {
        const QString finding = query.value(0).toString();
        // A row that breaks a constraint harms nothing but itself.
        if (finding == QLatin1String("ok") || finding.startsWith(QLatin1String("NULL value in")))
            continue;
        qWarning().noquote() << "E_0_ user.db is damaged:" << finding;
        damaged = true;
    }
    return damaged || query.lastError().isValid() ? Condition::Damaged : Condition::Sound;
}

bool UserDatabaseFile::setAside() const
{
    if (moveWithJournals(m_fileName, m_fileToSalvage))
        return true;
    qWarning().noquote() << "E_0_ Cannot move the damaged file aside:" << m_fileName;
    return false;
}

bool UserDatabaseFile::create(const QSqlDatabase& database)
{
    const bool isDamaged = QFile::exists(m_fileToSalvage);
    const bool created = inTransaction(database, [&] {
        for (const char* statement : schema) {
            if (!run(database, QLatin1String(statement)))
                return false;
        }
        if (isDamaged && !salvageUserData(m_fileToSalvage, database, &m_salvagedRows))
            return false;
        return run(database, QStringLiteral("PRAGMA user_version = %1").arg(CurrentVersion));
    });
    if (!created || !isDamaged)
        return created;
    m_setAsideFile = giveDate();
    qWarning().noquote() << "U_ The file with your groups and notes was damaged. It was kept as" << m_setAsideFile
                         << "and a new one was begun.";
    return true;
}

QString UserDatabaseFile::giveDate() const
{
    const QString stamp = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd-HHmmss"));
    QString target = m_fileName + QStringLiteral(".damaged-") + stamp;
    for (int n = 2; QFile::exists(target); ++n)
        target = m_fileName + QStringLiteral(".damaged-%1-%2").arg(stamp).arg(n);
    return moveWithJournals(m_fileToSalvage, target) ? target : m_fileToSalvage;
}

bool UserDatabaseFile::upgrade(const QSqlDatabase& database, int version) const
{
    if (!keepCopy(database, version))
        return false;
    return inTransaction(database, [&] {
        for (const UpgradeStep& step : upgradeSteps) {
            if (step.version <= version || number(database, QLatin1String(step.unneeded), 0) == 1)
                continue;
            if (!run(database, QLatin1String(step.statement)))
                return false;
        }
        return run(database, QStringLiteral("PRAGMA user_version = %1").arg(CurrentVersion));
    });
}

bool UserDatabaseFile::keepCopy(const QSqlDatabase& database, int version) const
{
    const QString copy = m_fileName + QStringLiteral(".version%1").arg(version);
    if (QFile::exists(copy))
        return true;
    // What a log still holds belongs to the copy too.
    run(database, QStringLiteral("PRAGMA wal_checkpoint(TRUNCATE)"));
    const QString part = copy + QStringLiteral(".part");
    QFile::remove(part);
    if (QFile::copy(m_fileName, part) && QFile::rename(part, copy))
        return true;
    qWarning().noquote() << "E_0_ Cannot keep a copy before the upgrade:" << copy;
    QFile::remove(part);
    return false;
}
