#include "qtService/database/DatabaseConnectionFactory.h"

#include <QDebug>
#include <QSqlQuery>
#include <QThread>
#include <QThreadStorage>
#include <QUuid>
#include <QWeakPointer>

// What outlives the factory in the threads that used it: the names of the open connections.
struct DatabaseConnectionFactory::State
{
    QMutex mutex;
    QStringList names;

    void close(const QString& name)
    {
        QMutexLocker locker(&mutex);
        if (names.removeOne(name))
            QSqlDatabase::removeDatabase(name);
    }
};

namespace {

// The connections a thread has opened, of whatever factory; closed by the thread itself when it ends.
class ThreadConnections
{
public:
    ~ThreadConnections()
    {
        for (const Connection& connection : qAsConst(m_connections)) {
            if (const auto state = connection.state.toStrongRef())
                state->close(connection.name);
        }
    }

    void add(const QSharedPointer<DatabaseConnectionFactory::State>& state, const QString& name)
    {
        m_connections.erase(std::remove_if(m_connections.begin(), m_connections.end(),
                                           [](const Connection& c) { return c.state.isNull(); }),
                            m_connections.end());
        m_connections.append({state.toWeakRef(), name});
    }

private:
    struct Connection
    {
        QWeakPointer<DatabaseConnectionFactory::State> state;
        QString name;
    };
    QVector<Connection> m_connections;
};

QThreadStorage<ThreadConnections>& threadConnections()
{
    // Never destroyed: a pool thread may end after the objects of this file.
    static auto* const storage = new QThreadStorage<ThreadConnections>;
    return *storage;
}

} // namespace

DatabaseConnectionFactory::DatabaseConnectionFactory(const Parameters& parameters, QObject* parent)
    : QObject(parent)
    , m_state(QSharedPointer<State>::create())
    , m_parameters(parameters)
    , m_baseName(QUuid::createUuid().toString())
    , m_writeMutex(QMutex::Recursive)
{
    m_firstConnection = threadConnectionName();
    database();
}

DatabaseConnectionFactory::~DatabaseConnectionFactory()
{
    // Threads that end from now on find their weak references void or their names gone.
    const QStringList names = connectionNames();
    for (const QString& name : names)
        m_state->close(name);
}

QString DatabaseConnectionFactory::threadConnectionName() const
{
    return QStringLiteral("%1-%2").arg(m_baseName).arg(quintptr(QThread::currentThreadId()));
}

QSqlDatabase DatabaseConnectionFactory::database()
{
    const QString name = threadConnectionName();
    QMutexLocker locker(&m_state->mutex);
    if (m_state->names.contains(name)) {
        QSqlDatabase database = QSqlDatabase::database(name, false);
        if (!database.isOpen())
            open(database);
        return database;
    }

    // Made from the parameters rather than cloned: the first connection may have gone with its thread.
    QSqlDatabase database = QSqlDatabase::addDatabase(m_parameters.driver, name);
    database.setDatabaseName(m_parameters.databaseName);
    database.setHostName(m_parameters.hostName);
    database.setUserName(m_parameters.userName);
    database.setPassword(m_parameters.password);
    database.setPort(m_parameters.port);
    database.setNumericalPrecisionPolicy(m_parameters.precision);
    m_state->names.append(name);
    threadConnections().localData().add(m_state, name);
    open(database);
    return database;
}

void DatabaseConnectionFactory::open(QSqlDatabase& database)
{
    if (!database.open()) {
        qWarning().noquote() << "E_1_ Cannot open" << m_parameters.databaseName << database.lastError().text();
        return;
    }
    QSqlQuery query(database);
    for (const QString& statement : m_parameters.startStatements) {
        if (!query.exec(statement))
            qWarning().noquote() << "E_1_" << statement << query.lastError().text();
    }
}

void DatabaseConnectionFactory::closeConnection()
{
    m_state->close(threadConnectionName());
}

const DatabaseConnectionFactory::Parameters& DatabaseConnectionFactory::parameters() const
{
    return m_parameters;
}

QStringList DatabaseConnectionFactory::connectionNames() const
{
    QMutexLocker locker(&m_state->mutex);
    return m_state->names;
}

QMutex& DatabaseConnectionFactory::writeMutex()
{
    return m_writeMutex;
}
