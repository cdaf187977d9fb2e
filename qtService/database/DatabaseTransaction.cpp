#include "qtService/database/DatabaseTransaction.h"

#include <QDebug>
#include <QSqlError>

DatabaseTransaction::DatabaseTransaction(const QSqlDatabase& database)
    : m_database(database)
    , m_active(m_database.transaction())
{
    if (!m_active)
        qWarning().noquote() << "E_1_ Cannot begin a transaction:" << m_database.lastError().text();
}

DatabaseTransaction::~DatabaseTransaction()
{
    if (m_active)
        m_database.rollback();
}

bool DatabaseTransaction::isActive() const
{
    return m_active;
}

bool DatabaseTransaction::commit()
{
    if (!m_active)
        return false;
    if (!m_database.commit()) {
        qWarning().noquote() << "E_1_ Cannot commit a transaction:" << m_database.lastError().text();
        return false;
    }
    m_active = false;
    return true;
}
