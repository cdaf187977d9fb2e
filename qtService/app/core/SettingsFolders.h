#pragma once

#include <QString>

namespace krv {

// The per-user folder of settings and data, and the one all users share. Both end with "/" and are created when
// missing; an empty text says that the folder could not be made.
QString userSettingsFolder();
QString commonSettingsFolder();

} // namespace krv
