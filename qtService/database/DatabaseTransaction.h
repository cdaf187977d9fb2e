#pragma once

#include <QSqlDatabase>

// A transaction that is rolled back when it goes out of scope without a commit. Inside another one of the connection it
// is a part of that, which can be taken back by itself. Its frame outlives no query of the connection that still has
// rows to give.
class DatabaseTransaction
{
public:
    explicit DatabaseTransaction(const QSqlDatabase& database);
    ~DatabaseTransaction();
    Q_DISABLE_COPY(DatabaseTransaction)

    bool isActive() const;
    // False when the changes did not reach the file; they are rolled back then.
    bool commit();

private:
    QSqlDatabase m_database;
    bool m_active = false;
};
