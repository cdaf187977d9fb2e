#include "qtService/database/UserDatabaseAccess.h"

UserDatabaseAccess::UserDatabaseAccess(KrvUserDatabase* database)
    : m_database(database)
{
}

bool UserDatabaseAccess::use(const std::function<void(const KrvUserDatabase&)>& function) const
{
    QReadLocker locker(&m_lock);
    if (!m_database)
        return false;
    function(*m_database);
    return true;
}

void UserDatabaseAccess::close()
{
    QWriteLocker locker(&m_lock);
    m_database = nullptr;
}
