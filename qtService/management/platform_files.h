#pragma once

#include <QPair>
#include <QString>
#include <QStringList>

// What the search for font files asks of the operating system.
namespace kerval::platform {

// Tells files and folders apart however they are reached; both 0 when there is none. Links are followed.
using FileId = QPair<quint64, quint64>;
FileId fileId(const QString& path);

// The names in a folder that are no valid text and which no file can therefore be opened by, in a readable spelling.
QStringList unreadableNames(const QString& folder);

} // namespace kerval::platform
