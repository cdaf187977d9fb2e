#include "qtService/database/platform_paths.h"

namespace fms::platform {

QString pathKey(const QString& path)
{
    return path;
}

} // namespace fms::platform
