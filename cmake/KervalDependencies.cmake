# What Kerval calls but does not write. All of it is in Debian's archive; scripts/bootstrap installs it.
find_package(Qt5 5.15 REQUIRED COMPONENTS
    Core Gui Widgets Network Sql Xml Svg Script PrintSupport Concurrent DBus Qml Quick QuickWidgets LinguistTools Test)
find_package(PkgConfig REQUIRED)
pkg_check_modules(freetype2 REQUIRED IMPORTED_TARGET freetype2)
pkg_check_modules(harfbuzz REQUIRED IMPORTED_TARGET harfbuzz)
pkg_check_modules(fontconfig REQUIRED IMPORTED_TARGET fontconfig)
pkg_check_modules(sqlite3 REQUIRED IMPORTED_TARGET sqlite3)
pkg_check_modules(minizip REQUIRED IMPORTED_TARGET minizip)
pkg_check_modules(zlib REQUIRED IMPORTED_TARGET zlib)

# http-parser ships neither a CMake package nor a pkg-config file.
find_path(HTTP_PARSER_INCLUDE_DIR http_parser.h REQUIRED)
find_library(HTTP_PARSER_LIBRARY http_parser REQUIRED)
add_library(HttpParser::HttpParser UNKNOWN IMPORTED)
set_target_properties(HttpParser::HttpParser PROPERTIES
    IMPORTED_LOCATION "${HTTP_PARSER_LIBRARY}"
    INTERFACE_INCLUDE_DIRECTORIES "${HTTP_PARSER_INCLUDE_DIR}")
