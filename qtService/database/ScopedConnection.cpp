#include "qtService/database/ScopedConnection.h"

#include <QUuid>

ScopedConnection::ScopedConnection(const QString& fileName, const QString& options)
    : m_name(QUuid::createUuid().toString())
{
    QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_name);
    database.setDatabaseName(fileName);
    database.setConnectOptions(options);
    database.open();
}

ScopedConnection::~ScopedConnection()
{
    QSqlDatabase::removeDatabase(m_name);
}

QSqlDatabase ScopedConnection::database() const
{
    return QSqlDatabase::database(m_name, false);
}
