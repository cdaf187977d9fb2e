#pragma once

class KrvUserDatabase;

// A transaction of user.db that is rolled back with its scope unless it was committed.
class UserDatabaseTransaction
{
public:
    explicit UserDatabaseTransaction(KrvUserDatabase& database);
    ~UserDatabaseTransaction();
    UserDatabaseTransaction(const UserDatabaseTransaction&) = delete;
    UserDatabaseTransaction& operator=(const UserDatabaseTransaction&) = delete;

    // False when it could not be begun; nothing may be written then.
    bool isActive() const;
    bool commit();

private:
    KrvUserDatabase& m_database;
    bool m_open;
};
