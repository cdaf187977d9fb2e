#pragma once

#include "qtService/database/FontDatabase.h"
#include "qtService/database/StaticFont.h"

// Reads the whole table "font" into records, as RecordListFontFactory makes them, through SQLite's own interface: a
// text that many records hold is recognised by its bytes and never converted again, and no row is buffered. Loading a
// catalogue of 100,000 faces is what the user waits for at every start.
//
// It stands on two facts: FontDatabase stores names and values in the clear, and the driver's connection may be used
// directly as long as both sides run the same SQLite.
class FontTableReader
{
public:
    explicit FontTableReader(const FontDatabase& database);

    // False when the driver does not let us at its connection; the gateway reads the table then.
    bool isUsable() const;

    // In the order of ids. False when reading ended in an error; errorCode() then has SQLite's number.
    bool read(QList<StaticFontPtr>& fonts);
    int errorCode() const;

private:
    const FontDatabase& m_database;
    void* m_handle = nullptr;
    int m_errorCode = 0;
};
