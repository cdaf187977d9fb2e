#pragma once

#include <QDateTime>
#include <QString>

// The side file "<font file>.onlineinfo" that says from which online source a font came; the adder program reads it.
namespace krv {

// Writes the side file of `path`; true when it reached the disk.
bool writeOnlineInfo(const QString& path, int onlineId, const QString& onlineSource, const QDateTime& downloadedDate,
                     bool purchased);
bool removeOnlineInfo(const QString& path);

} // namespace krv
