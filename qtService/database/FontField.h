#pragma once

#include "qtService/database/StaticFontData.h"

#include <QVariant>

namespace fms {

// A property of the record as code that runs over many records reads it: found once by name, then read without another
// look-up. The data is read under the record's lock, which the caller holds (StaticFontAccess).
struct FontField
{
    enum Kind
    {
        Number,
        Flag,
        Byte,
        Text,
        SharedTextKind, // a text held by SharedText; `shared` is set as well
        Address,        // a URL, held like the former
        Time,
        Subsets
    };

    const char* name;
    Kind kind;
    int (*number)(const StaticFontData&) = nullptr;          // Number, Flag, Byte
    const QString& (*text)(const StaticFontData&) = nullptr; // Text, SharedTextKind, Address
    const SharedText& (*shared)(const StaticFontData&) = nullptr;
    QDateTime (*moment)(const StaticFontData&) = nullptr; // Time
    qint64 (*seconds)(const StaticFontData&) = nullptr;   // Time; 0 for an invalid one
    bool isSecondsText = false;                           // Time held as a number, never invalid

    bool isNumber() const { return kind == Number || kind == Flag || kind == Byte; }
    bool isText() const { return kind == Text || kind == SharedTextKind; }

    // The value as the property of the record gives it. For "fontHash" it is the hash computed so far.
    QVariant value(const StaticFontData& data) const;

    // Null when the record has no such property.
    static const FontField* find(const QString& name);
};

} // namespace fms
