#pragma once

#include <QString>

namespace krv {

// The release's version text, for example "2.7.1".
QString versionString();

// (major x 100 + minor) x 100 + patch of a version text; what follows the first space is ignored.
int versionNumber(const QString& version);
int versionNumber();

} // namespace krv
