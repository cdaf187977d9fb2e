#pragma once

#include <QSqlDatabase>
#include <QString>

// A connection of its own to one file of SQLite, closed and forgotten with its scope, which no copy of database() and
// no query may outlive.
class ScopedConnection
{
public:
    explicit ScopedConnection(const QString& fileName, const QString& options = QString());
    ~ScopedConnection();
    Q_DISABLE_COPY(ScopedConnection)

    // Not open when the file cannot be opened; lastError() then says why.
    QSqlDatabase database() const;

private:
    const QString m_name;
};
