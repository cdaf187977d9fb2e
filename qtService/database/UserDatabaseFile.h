#pragma once

#include <QString>

class QSqlDatabase;

// Brings the file of user.db into a state that KrvUserDatabase can work on, before anybody else opens it:
//  - a file that is no database, or is damaged, is moved aside together with its journals, as "user.db.damaged";
//  - a missing or empty file gets the schema, and what can still be read of the file moved aside, in one transaction;
//    the latter then gets a dated name. Until that has succeeded (there may be no room) each start tries again;
//  - versions 1 to 5 are upgraded to the current one in one transaction, after a copy was kept beside the file
//    ("user.db.version3"; a copy from an earlier attempt is not overwritten).
// Other versions are left alone. Nothing is ever deleted.
class UserDatabaseFile
{
public:
    static constexpr int CurrentVersion = 6;

    explicit UserDatabaseFile(const QString& fileName);

    // False when the file cannot be opened, created or upgraded; an older file is then unchanged.
    bool prepare();
    // Where a damaged file is now that another one took its place; empty when there was none.
    QString setAsideFile() const;
    // What was taken over from it.
    int salvagedRows() const;

private:
    enum class Condition
    {
        Sound,
        Damaged,
        Unreadable
    };

    Condition examine() const;
    bool setAside() const;
    QString giveDate() const;
    bool create(const QSqlDatabase& database);
    bool upgrade(const QSqlDatabase& database, int version) const;
    bool keepCopy(const QSqlDatabase& database, int version) const;

    const QString m_fileName;
    const QString m_fileToSalvage;
    QString m_setAsideFile;
    int m_salvagedRows = 0;
};
