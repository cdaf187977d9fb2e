#pragma once

#include <QString>

namespace krv::platform {

// Shows a file selected in the desktop's file manager; when none answers, opens the folder of the file instead. Returns
// at once. Main thread.
void showInFileManager(const QString& filePath);

} // namespace krv::platform
