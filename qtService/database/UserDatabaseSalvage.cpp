#include "qtService/database/UserDatabaseSalvage.h"

#include "qtService/database/ScopedConnection.h"

#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QStringList>
#include <QVariant>
#include <QtDebug>

#include <limits>
#include <memory>

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

void removeDatabaseFile(const QString& fileName)
{
    for (const char* suffix : {"", "-wal", "-shm", "-journal"})
        QFile::remove(fileName + QLatin1String(suffix));
}

// A copy of the damaged file beside it, where there is room for the new one too, or none will be made anyway. It is
// gone with the object, or with the next attempt after a crash.
class DamagedCopy
{
public:
    explicit DamagedCopy(const QString& fileName)
        : m_copy(fileName + QStringLiteral(".copy"))
    {
        removeDatabaseFile(m_copy);
        for (const char* suffix : {"", "-wal", "-journal"}) {
            QFile part(fileName + QLatin1String(suffix));
            if (part.exists() && !part.copy(m_copy + QLatin1String(suffix))) {
                m_error = part.errorString();
                return;
            }
        }
        m_connection.reset(new ScopedConnection(m_copy));
        // Or a file that was cut off is not read at all.
        QSqlQuery(m_connection->database()).exec(QStringLiteral("PRAGMA writable_schema = ON"));
    }
    ~DamagedCopy()
    {
        m_connection.reset();
        removeDatabaseFile(m_copy);
    }
    Q_DISABLE_COPY(DamagedCopy)

    bool isComplete() const { return m_connection != nullptr; }
    QString error() const { return m_error; }
    QSqlDatabase database() const { return m_connection->database(); }

private:
    const QString m_copy;
    QString m_error;
    std::unique_ptr<ScopedConnection> m_connection;
};

// One table: from its start up to the first bad page, from its end down to the last, and between them row by row.
class TableSalvage
{
public:
    TableSalvage(const QString& table, const QSqlDatabase& damaged, const QSqlDatabase& fresh)
        : m_table(table)
        , m_damaged(damaged)
        , m_insert(fresh)
    {
        const QSqlRecord known = fresh.record(table);
        const QSqlRecord found = damaged.record(table);
        QStringList columns;
        for (int i = 0; i < found.count(); ++i) {
            if (known.contains(found.fieldName(i)))
                columns.append(found.fieldName(i));
        }
        m_columnCount = columns.size();
        m_columns = QLatin1Char('`') + columns.join(QStringLiteral("`,`")) + QLatin1Char('`');
        QStringList marks;
        for (int i = 0; i < m_columnCount; ++i)
            marks.append(QStringLiteral("?"));
        m_insert.prepare(QStringLiteral("INSERT OR IGNORE INTO `%1` (%2) VALUES (%3)")
                             .arg(table, m_columns, marks.join(QLatin1Char(','))));
    }

    bool takeOver()
    {
        if (m_columnCount == 0)
            return true;
        qint64 first = 0;
        if (takeOverInOrder("ASC", &first) || m_isRefused)
            return !m_isRefused;
        qint64 last = lastKnownRow();
        takeOverInOrder("DESC", &last);
        return !m_isRefused && takeOverBetween(first, last);
    }

    int rows() const { return m_rows; }

private:
    QString selection(const QString& rest) const
    {
        return QStringLiteral("SELECT rowid,%1 FROM `%2` %3").arg(m_columns, m_table, rest);
    }

    // True when the end of the table was reached; `row` is the last one that was read.
    bool takeOverInOrder(const char* order, qint64* row)
    {
        QSqlQuery read(m_damaged);
        read.setForwardOnly(true);
        if (!read.exec(selection(QStringLiteral("ORDER BY rowid ") + QLatin1String(order))))
            return false;
        while (!m_isRefused && read.next()) {
            *row = read.value(0).toLongLong();
            store(read);
        }
        return !read.lastError().isValid();
    }

    bool takeOverBetween(qint64 first, qint64 last)
    {
        // Damage makes up any number of a row, the highest there is too.
        if (last <= first)
            return true;
        constexpr quint64 mostRows = 1000000;
        const qint64 end = quint64(last) - quint64(first) > mostRows ? first + qint64(mostRows) : last;
        constexpr int mostFailures = 2000; // one after the other, as where the root is bad; a page has hundreds of rows
        int failures = 0;
        QSqlQuery read(m_damaged);
        read.setForwardOnly(true);
        read.prepare(selection(QStringLiteral("WHERE rowid = ?")));
        for (qint64 row = first + 1; row < end && failures < mostFailures && !m_isRefused; ++row) {
            read.bindValue(0, row);
            const bool found = read.exec() && read.next();
            failures = read.lastError().isValid() ? failures + 1 : 0;
            if (found)
                store(read);
        }
        return !m_isRefused;
    }

    // The highest row that the table ever had, for the case that its end cannot be read.
    qint64 lastKnownRow() const
    {
        constexpr qint64 guess = 100000;
        QSqlQuery query(m_damaged);
        query.prepare(QStringLiteral("SELECT seq FROM sqlite_sequence WHERE name = ?"));
        query.bindValue(0, m_table);
        if (!query.exec() || !query.next())
            return guess;
        const qint64 row = query.value(0).toLongLong();
        return row < std::numeric_limits<qint64>::max() ? row + 1 : row;
    }

    void store(const QSqlQuery& row)
    {
        constexpr int constraint = 19;
        for (int i = 0; i < m_columnCount; ++i)
            m_insert.bindValue(i, row.value(i + 1));
        if (m_insert.exec())
            m_rows += qMax(0, m_insert.numRowsAffected());
        else
            m_isRefused = (m_insert.lastError().nativeErrorCode().toInt() & 0xff) != constraint;
    }

    const QString m_table;
    const QSqlDatabase m_damaged;
    QSqlQuery m_insert;
    QString m_columns;
    int m_columnCount = 0;
    int m_rows = 0;
    bool m_isRefused = false; // by the new file, not for the row's own sake
};

} // namespace

bool salvageUserData(const QString& damagedFileName, const QSqlDatabase& fresh, int* rows)
{
    *rows = 0;
    const DamagedCopy damaged(damagedFileName);
    if (!damaged.isComplete()) {
        qWarning().noquote() << "E_0_ Cannot copy" << damagedFileName << damaged.error();
        return false;
    }
    for (const char* table : tables) {
        TableSalvage salvage(QLatin1String(table), damaged.database(), fresh);
        if (!salvage.takeOver())
            return false;
        *rows += salvage.rows();
    }
    for (const char* correction : corrections) {
        QSqlQuery query(fresh);
        if (!query.exec(QLatin1String(correction))) {
            qWarning().noquote() << "E_0_ user.db: Last error:" << query.lastError().text();
            return false;
        }
    }
    return true;
}
