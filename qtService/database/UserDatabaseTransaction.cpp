#include "qtService/database/UserDatabaseTransaction.h"

#include "qtService/database/KrvUserDatabase.h"

UserDatabaseTransaction::UserDatabaseTransaction(KrvUserDatabase& database)
    : m_database(database)
    , m_open(database.beginTransaction())
{
}

UserDatabaseTransaction::~UserDatabaseTransaction()
{
    if (m_open)
        m_database.endTransaction(false);
}

bool UserDatabaseTransaction::isActive() const
{
    return m_open;
}

bool UserDatabaseTransaction::commit()
{
    if (!m_open)
        return false;
    m_open = false;
    return m_database.endTransaction(true);
}
