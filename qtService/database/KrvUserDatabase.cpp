#include "qtService/database/KrvUserDatabase.h"

#include "qtService/database/DatabaseConnectionFactory.h"
#include "qtService/database/UserDatabaseAccess.h"
#include "qtService/database/UserDatabaseFile.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QtDebug>

namespace {

// The values of one IN list; SQLite builds differ in how many they accept, all take this many.
const int chunkSize = 500;

QString placeholders(int count)
{
    QString text;
    text.reserve(2 * count);
    for (int i = 0; i < count; ++i)
        text += i ? QLatin1String(",?") : QLatin1String("?");
    return text;
}

void logBoundValues(const QSqlQuery& query, const char* title)
{
    const QMap<QString, QVariant> values = query.boundValues();
    QDebug debug = qDebug().noquote();
    debug << "E_0_ Last error:" << query.lastError().text() << "\nlast query:" << query.lastQuery()
          << "\nparameter count:" << values.size() << '\n'
          << title;
    for (auto it = values.constBegin(); it != values.constEnd(); ++it)
        debug << "\nkey:" << it.key() << "value:" << it.value().toString();
}

} // namespace

KrvUserDatabase::KrvUserDatabase(QObject* parent)
    : QObject(parent)
    , m_access(QSharedPointer<UserDatabaseAccess>::create(this))
{
    qRegisterMetaType<QList<FontHash>>("QList<KrvUserDatabase::FontHash>");
    qRegisterMetaType<QList<FontHash>>("QList<FontHash>");
    qRegisterMetaType<FontHash>("KrvUserDatabase::FontHash");
    qRegisterMetaType<FontHash>("FontHash");
}

KrvUserDatabase::~KrvUserDatabase()
{
    m_access->close();
}

QSharedPointer<const UserDatabaseAccess> KrvUserDatabase::access() const
{
    return m_access;
}

bool KrvUserDatabase::open(const QString& fileName)
{
    UserDatabaseFile file(fileName);
    const bool ready = file.prepare();
    m_setAsideFile = file.setAsideFile();
    m_hasSalvaged = file.salvagedRows() > 0;
    if (!ready) {
        qWarning().noquote() << "E_0_ FAILED to open:" << fileName;
        return false;
    }
    DatabaseConnectionFactory::Parameters parameters;
    parameters.databaseName = fileName;
    // Without recursive triggers deleting a group would stop at its direct children.
    parameters.startStatements =
        QStringList{QStringLiteral("PRAGMA journal_mode=WAL;"), QStringLiteral("PRAGMA recursive_triggers=ON;")};
    m_connections.reset(new DatabaseConnectionFactory(parameters));
    if (!connection().isOpen())
        return false;
    loadFontData();
    return true;
}

bool KrvUserDatabase::isOpen() const
{
    return !m_connections.isNull() && connection().isOpen();
}

QString KrvUserDatabase::setAsideFile() const
{
    return m_setAsideFile;
}

bool KrvUserDatabase::hasSalvaged() const
{
    return m_hasSalvaged;
}

int KrvUserDatabase::userVersion() const
{
    QSqlQuery query(connection());
    return prepare(query, QStringLiteral("PRAGMA user_version")) && execute(query) && query.next()
               ? query.value(0).toInt()
               : 0;
}

QSqlDatabase KrvUserDatabase::connection() const
{
    return m_connections ? m_connections->database() : QSqlDatabase();
}

bool KrvUserDatabase::beginTransaction()
{
    if (!m_connections)
        return false;
    m_connections->writeMutex().lock();
    const QString name = QStringLiteral("trans_%1").arg(m_savepoints.size());
    if (!execute(QStringLiteral("SAVEPOINT %1").arg(name))) {
        m_connections->writeMutex().unlock();
        return false;
    }
    m_savepoints.append({name, m_announcements.size()});
    return true;
}

bool KrvUserDatabase::endTransaction(bool commit)
{
    if (m_savepoints.isEmpty())
        return false;
    const Savepoint savepoint = m_savepoints.takeLast();
    const bool committed = commit && execute(QStringLiteral("RELEASE SAVEPOINT ") + savepoint.name);
    if (!committed) {
        // Rolling back to a savepoint keeps it open, and with it the transaction.
        execute(QStringLiteral("ROLLBACK TRANSACTION TO SAVEPOINT ") + savepoint.name);
        execute(QStringLiteral("RELEASE SAVEPOINT ") + savepoint.name);
        m_announcements.erase(m_announcements.begin() + savepoint.announcements, m_announcements.end());
        if (m_fontDataTouched)
            loadFontData();
    }
    QList<std::function<void()>> announcements;
    if (m_savepoints.isEmpty()) {
        announcements.swap(m_announcements);
        m_fontDataTouched = false;
    }
    m_connections->writeMutex().unlock();
    for (const auto& signal : qAsConst(announcements))
        signal();
    return committed == commit;
}

void KrvUserDatabase::announce(const std::function<void()>& signal)
{
    m_announcements.append(signal);
}

int KrvUserDatabase::execInsertQuery(QSqlQuery& query) const
{
    if (query.exec())
        return query.lastInsertId().toInt();
    qDebug().noquote() << "E_0_ KrvUserDatabase::execInsertQuery SQL failed";
    logBoundValues(query, "bound values:");
    return 0;
}

bool KrvUserDatabase::execute(QSqlQuery& query) const
{
    if (query.exec())
        return true;
    logBoundValues(query, "bound valuse:");
    return false;
}

bool KrvUserDatabase::execute(const QString& statement) const
{
    QSqlQuery query(connection());
    return prepare(query, statement) && execute(query);
}

// False before a successful open(), and for a statement that the file's schema does not bear.
bool KrvUserDatabase::prepare(QSqlQuery& query, const QString& statement) const
{
    if (!m_connections)
        return false;
    if (query.prepare(statement))
        return true;
    logBoundValues(query, "bound valuse:");
    return false;
}

// Runs a statement with "IN (%1)" over any number of values, a chunk at a time; `leading` is bound before each chunk.
bool KrvUserDatabase::executeForAll(const QString& statement, const QVariantList& leading, const QVariantList& values,
                                    const RowReader& read) const
{
    QSqlQuery query(connection());
    query.setForwardOnly(true);
    int prepared = 0;
    for (int start = 0; start < values.size(); start += chunkSize) {
        const int count = qMin(chunkSize, values.size() - start);
        if (count != prepared && !prepare(query, statement.arg(placeholders(count))))
            return false;
        prepared = count;
        int position = 0;
        for (const QVariant& value : leading)
            query.bindValue(position++, value);
        for (int i = 0; i < count; ++i)
            query.bindValue(position++, values.at(start + i));
        if (!execute(query))
            return false;
        while (read && query.next())
            read(query);
    }
    return true;
}
