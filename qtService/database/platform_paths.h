#pragma once

#include <QString>

namespace fms::platform {

// The form of a path under which the platform's file system takes two paths for the same: lower case where it ignores
// case, the path itself where it does not.
QString pathKey(const QString& path);

} // namespace fms::platform
