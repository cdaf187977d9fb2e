#pragma once

#include <QString>

namespace kerval::testing {

// Writes a whole file, making its folders; fails the process when it cannot, because a test without its files is void.
void writeFile(const QString& path, const QByteArray& content);
QByteArray readFile(const QString& path);

} // namespace kerval::testing
