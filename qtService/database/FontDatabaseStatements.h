#pragma once

#include "qtService/database/FontDatabase.h"

// The columns of fms.db's tables and the statements that make them.
namespace fontdatabase {

// By position.
QStringList fontColumnNames();
QStringList featureColumnNames();
QSet<FontDatabase::FontTableColumn> plainFontColumns();

// For a database of the driver; none for a driver that the catalogue does not know.
QStringList creationStatements(const QString& driver);

} // namespace fontdatabase
