#pragma once

#include <QByteArray>
#include <QPair>
#include <QString>
#include <QVector>

namespace kerval::testing {

using ZipContent = QVector<QPair<QString, QByteArray>>;

// Writes a zip archive of these entries, whatever their names; the path.
QString writeZip(const QString& path, const ZipContent& entries);

} // namespace kerval::testing
