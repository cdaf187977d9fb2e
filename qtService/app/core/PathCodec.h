#pragma once

#include <QByteArray>
#include <QString>

// Paths in command lines, the queue file and the scan-path file are written as "0x" and the hexadecimal digits of their
// UTF-8 bytes, so that they need no quoting. Text without "0x" is taken as it stands.
namespace krv {

QByteArray encodePath(const QString& path);
QString decodePath(const QByteArray& text);

} // namespace krv
