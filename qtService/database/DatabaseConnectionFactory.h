#pragma once

#include <QMutex>
#include <QObject>
#include <QSharedPointer>
#include <QSqlDatabase>
#include <QSqlError>
#include <QStringList>

// Hands each thread its own open connection to one database: a connection of Qt SQL may only be used by the thread that
// made it. A thread's connection is closed when that thread ends, the others when the factory goes; until then no user
// may keep a QSqlDatabase or QSqlQuery of it beyond its own frame.
class DatabaseConnectionFactory : public QObject
{
    Q_OBJECT

public:
    struct Parameters
    {
        QString driver = QStringLiteral("QSQLITE");
        QString databaseName;
        QString hostName;
        QString userName;
        QString password;
        int port = -1;
        QSql::NumericalPrecisionPolicy precision = QSql::LowPrecisionInt32;
        // Run on every new connection.
        QStringList startStatements;
    };

    // Opens the constructing thread's connection. A failure shows as a connection that is not open.
    explicit DatabaseConnectionFactory(const Parameters& parameters, QObject* parent = nullptr);
    ~DatabaseConnectionFactory() override;

    // The calling thread's connection, opened on first use.
    QSqlDatabase database();
    // Closes the calling thread's connection; the next database() opens it anew.
    void closeConnection();

    const Parameters& parameters() const;
    QStringList connectionNames() const;

    // Writers of this process take turns: SQLite allows one, and waiting here is fair and never times out. Recursive,
    // so that a writer may call another one.
    QMutex& writeMutex();

    struct State;

private:
    void open(QSqlDatabase& database);
    QString threadConnectionName() const;

    const QSharedPointer<State> m_state;
    const Parameters m_parameters;
    QString m_baseName;
    QString m_firstConnection;
    QMutex m_writeMutex;
};
