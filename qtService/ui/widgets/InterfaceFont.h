#pragma once

namespace ui {

// Where no desktop names a font for the interface, as on the offscreen platform, Qt takes any of the installed ones; of
// thousands of fonts that may be one without letters. Gives the application the system's sans serif then. Call it once,
// after the application object is made; GUI thread.
void ensureInterfaceFont();

} // namespace ui
