#pragma once

#include <QString>

namespace kerval::testing {

// Puts the helper programs beside the test program, where the library looks for them. The folder is KERVAL_BIN_DIR.
void provideHelperPrograms(const QString& binFolder);

} // namespace kerval::testing
