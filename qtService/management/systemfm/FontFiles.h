#pragma once

#include <QString>
#include <QStringList>

// Which files make up one catalogued font file. A Type 1 font is catalogued by its metrics file, programs read its
// outline file, and both go together; every other font is one file.
namespace kerval::systemfm::fontfiles {

// The file that fontconfig lists for a catalogued font file; empty when that is not there.
QString outline(const QString& fileName);
// The catalogued name of a file that fontconfig lists.
QString catalogued(const QString& outline);
// The outline first, then the files that go with it.
QStringList all(const QString& fileName);

// A short name for our own copy or link of a font: letters and digits whatever the font's file is called, the same for
// the same path at all times.
QString ownName(const QString& fileName);
// ownName with the suffix of one of the font's files.
QString ownName(const QString& fileName, const QString& part);

} // namespace kerval::systemfm::fontfiles
