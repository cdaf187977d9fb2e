#pragma once

class QString;
class QUrl;

// What other programs of the desktop show. Where none takes it, a message says so and names what could not be opened,
// so that no link and no menu entry seems dead. Main thread.

namespace ui {

void openAddress(const QUrl& url);
// In the file manager, selected.
void showFile(const QString& filePath);

} // namespace ui
