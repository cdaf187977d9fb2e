#pragma once

#include <QString>

#include <functional>

namespace krv::platform {

// Shows a file selected in the desktop's file manager; when none answers, opens the folder of the file instead. Returns
// at once; should no program open even that, the function is called, then or later. Main thread.
void showInFileManager(const QString& filePath, const std::function<void()>& onFailure = {});

} // namespace krv::platform
