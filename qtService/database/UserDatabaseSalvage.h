#pragma once

class QSqlDatabase;
class QString;

// Takes over into a new user.db, whose schema is made, what can still be read of a damaged one. The damaged file is not
// touched: a copy of it is read, past the pages that are bad. What refers to a row that is lost is taken back.
//
// False when there was no room for the copy, or the new file did not take it; `rows` counts what was taken over.
bool salvageUserData(const QString& damagedFileName, const QSqlDatabase& fresh, int* rows);
