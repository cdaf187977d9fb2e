#pragma once

#include <QReadWriteLock>

#include <functional>

class KrvUserDatabase;

// The way to a user database for objects that may outlive it on another thread than the one that deletes it: a pointer
// that was good when it was looked at may be bad when it is used. KrvUserDatabase::access() gives it away, shared.
class UserDatabaseAccess
{
public:
    explicit UserDatabaseAccess(KrvUserDatabase* database);

    // Calls the function with the database, which is not deleted meanwhile; false, without a call, when it is gone. The
    // function must neither delete the database nor come back here.
    bool use(const std::function<void(const KrvUserDatabase&)>& function) const;
    // For the database, when it goes; waits for those who use it.
    void close();

private:
    mutable QReadWriteLock m_lock;
    KrvUserDatabase* m_database;
};
