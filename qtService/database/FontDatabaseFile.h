#pragma once

#include <QString>
#include <QStringList>

// The file of the catalogue while no connection is open to it: what it is, and moving it out of the way.
namespace fontdatabasefile {

enum Condition
{
    Missing, // or empty
    Current,
    Foreign,  // a database without our table
    Outdated, // a catalogue of another format
    Damaged,  // no database, or one that cannot be read
    Unreadable
};

Condition inspect(const QString& fileName, const QStringList& fontColumns, int formatVersion);

// True when an error number of SQLite says that the file itself is at fault.
bool isDamage(const QString& nativeErrorCode);

// For whoever meets damage while the catalogue is in use: has the next inspect() read the whole file, for which a start
// has no time otherwise.
void suspect(const QString& fileName);

// Moves the file and its journals to a dated name beside it, which is returned, after writing the paths of the fonts it
// still tells of to "olddbfontfiles.ev". Empty when the file cannot be moved; it is then as it was.
QString setAside(const QString& fileName, Condition condition);

// The list of paths that wait for a rescan.
QString oldFontFilesName(const QString& databaseFileName);

} // namespace fontdatabasefile
