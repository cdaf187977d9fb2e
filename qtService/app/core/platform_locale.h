#pragma once

namespace krv::platform {

// Where the locale names no character set (a service started without one, "C"), file names are taken for UTF-8, as the
// rest of the system takes them; Qt alone would read their bytes as Latin-1. Called first thing in main().
void useUtf8WithoutLocale();

} // namespace krv::platform
