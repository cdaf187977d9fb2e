#include "qtService/database/DatabaseTransaction.h"

#include <QDebug>
#include <QSqlError>
#include <QSqlQuery>

DatabaseTransaction::DatabaseTransaction(const QSqlDatabase& database)
    : m_database(database)
{
    QSqlQuery query(m_database);
    m_active = query.exec(QStringLiteral("SAVEPOINT change"));
    if (!m_active)
        qWarning().noquote() << "E_1_ Cannot begin a transaction:" << query.lastError().text();
}

DatabaseTransaction::~DatabaseTransaction()
{
    if (!m_active)
        return;
    // Both fail after an error upon which SQLite has taken everything back by itself.
    QSqlQuery query(m_database);
    query.exec(QStringLiteral("ROLLBACK TO change"));
    query.exec(QStringLiteral("RELEASE change"));
}

bool DatabaseTransaction::isActive() const
{
    return m_active;
}

bool DatabaseTransaction::commit()
{
    if (!m_active)
        return false;
    QSqlQuery query(m_database);
    if (!query.exec(QStringLiteral("RELEASE change"))) {
        qWarning().noquote() << "E_1_ Cannot commit a transaction:" << query.lastError().text();
        return false;
    }
    m_active = false;
    return true;
}
