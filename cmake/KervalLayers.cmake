# The build's own defence of the layers: every library of Kerval is made by kerval_add_layer(), which knows the number
# of its layer and stops the configuration when it links one that is not lower.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

option(KERVAL_LAYERS "Build every layer as a shared library with undefined symbols forbidden" OFF)
set(KERVAL_SANITIZER "" CACHE STRING "address or thread: builds everything under that sanitizer")

find_program(CCACHE ccache)
if(CCACHE)
    # time_macros and pch_defines let ccache serve sources that use a precompiled header.
    set(launcher ${CMAKE_COMMAND} -E env
        CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
        CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=1 ${CCACHE})
    set(CMAKE_C_COMPILER_LAUNCHER ${launcher})
    set(CMAKE_CXX_COMPILER_LAUNCHER ${launcher})
endif()

find_program(MOLD mold)
if(MOLD)
    add_link_options(-fuse-ld=mold)
endif()

# What every target of ours, and only ours, is compiled with.
add_library(kerval_flags INTERFACE)
target_include_directories(kerval_flags INTERFACE "${CMAKE_SOURCE_DIR}")
target_compile_options(kerval_flags INTERFACE -Wall -Wextra -Wpedantic -Wnon-virtual-dtor -Woverloaded-virtual -Werror
    -fpch-preprocess
    # GCC 12 follows Qt's shared pointers into exception paths that cannot be and calls them uninitialised there.
    $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
if(KERVAL_SANITIZER)
    target_compile_options(kerval_flags INTERFACE -fsanitize=${KERVAL_SANITIZER} -fno-omit-frame-pointer)
    target_link_options(kerval_flags INTERFACE -fsanitize=${KERVAL_SANITIZER})
    if(KERVAL_SANITIZER STREQUAL "address")
        # What is undefined ends the program, or a test would pass over the message.
        target_compile_options(kerval_flags INTERFACE -fsanitize=undefined,float-cast-overflow -fno-sanitize=vptr
            -fno-sanitize-recover=all -D_GLIBCXX_ASSERTIONS)
        target_link_options(kerval_flags INTERFACE -fsanitize=undefined)
    endif()
endif()
if(KERVAL_LAYERS)
    set(BUILD_SHARED_LIBS ON)
    target_link_options(kerval_flags INTERFACE -Wl,--no-undefined)
endif()

add_library(kerval_qt_flags INTERFACE)
target_link_libraries(kerval_qt_flags INTERFACE kerval_flags)
target_compile_definitions(kerval_qt_flags INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_NO_CAST_FROM_BYTEARRAY
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_USE_QSTRINGBUILDER QT_NO_FOREACH
    QT_DISABLE_DEPRECATED_BEFORE=0x050d00)

set(KERVAL_PCH_Qt5::Core <QByteArray> <QDateTime> <QDir> <QFile> <QHash> <QJsonArray> <QJsonDocument> <QJsonObject> <QList>
    <QMap> <QMutex> <QObject> <QReadWriteLock> <QRegularExpression> <QSet> <QSharedPointer> <QString> <QStringList>
    <QThread> <QTimer> <QUrl> <QVariant> <QVector> <algorithm> <functional> <memory> <vector>)
set(KERVAL_PCH_Qt5::Gui <QColor> <QImage> <QPainter> <QPixmap>)
set(KERVAL_PCH_Qt5::Widgets <QWidget> <QLabel> <QLayout> <QPushButton> <QAbstractItemModel>)
set(KERVAL_PCH_Qt5::Sql <QSqlDatabase> <QSqlQuery>)
set(KERVAL_PCH_Qt5::Test <QtTest>)

function(_kerval_precompile target)
    set(headers)
    foreach(library IN LISTS ARGN)
        list(APPEND headers ${KERVAL_PCH_${library}})
    endforeach()
    if(headers)
        target_precompile_headers(${target} PRIVATE ${headers})
    endif()
endfunction()

# kerval_add_layer(<target> LEVEL <n> [NO_QT] SOURCES <files> [LINK <public libraries>] [PRIVATE_LINK <libraries>])
# Headers that hold Q_OBJECT are listed among SOURCES beside their sources.
function(kerval_add_layer target)
    cmake_parse_arguments(arg "NO_QT" "LEVEL" "SOURCES;LINK;PRIVATE_LINK" ${ARGN})
    _kerval_check_levels(${target} ${arg_LEVEL} ${arg_LINK} ${arg_PRIVATE_LINK})
    add_library(${target} ${arg_SOURCES})
    set_property(TARGET ${target} PROPERTY KERVAL_LEVEL ${arg_LEVEL})
    target_link_libraries(${target} PUBLIC ${arg_LINK} PRIVATE ${arg_PRIVATE_LINK})
    _kerval_house_rules(${target} "${arg_NO_QT}" ${arg_LINK} ${arg_PRIVATE_LINK})
endfunction()

# kerval_add_program(<target> LEVEL <n> [NO_QT] [OUTPUT_NAME <name>] SOURCES <files> LINK <libraries>)
function(kerval_add_program target)
    cmake_parse_arguments(arg "NO_QT" "LEVEL;OUTPUT_NAME" "SOURCES;LINK" ${ARGN})
    _kerval_check_levels(${target} ${arg_LEVEL} ${arg_LINK})
    add_executable(${target} ${arg_SOURCES})
    if(arg_OUTPUT_NAME)
        set_target_properties(${target} PROPERTIES OUTPUT_NAME "${arg_OUTPUT_NAME}" SUFFIX "")
    endif()
    target_link_libraries(${target} PRIVATE ${arg_LINK})
    _kerval_house_rules(${target} "${arg_NO_QT}" ${arg_LINK})
endfunction()

# kerval_add_test(<target> SOURCES <files> LINK <libraries> [DEPENDS <programs it starts>])
# One test program for each layer; it links nothing above the layer. tests/support holds the shared main.
function(kerval_add_test target)
    cmake_parse_arguments(arg "" "" "SOURCES;LINK;DEPENDS" ${ARGN})
    add_executable(${target} ${arg_SOURCES})
    target_link_libraries(${target} PRIVATE kerval_testsupport ${arg_LINK} Qt5::Test)
    _kerval_house_rules(${target} "" Qt5::Core Qt5::Test ${arg_LINK})
    set_target_properties(${target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
    target_compile_definitions(${target} PRIVATE
        KERVAL_SOURCE_DIR="${CMAKE_SOURCE_DIR}" KERVAL_BIN_DIR="${CMAKE_BINARY_DIR}/bin")
    if(arg_DEPENDS)
        add_dependencies(${target} ${arg_DEPENDS})
    endif()
    add_test(NAME ${target} COMMAND ${target})
    set_tests_properties(${target} PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen" TIMEOUT 600)
endfunction()

function(_kerval_house_rules target no_qt)
    if(no_qt)
        target_link_libraries(${target} PRIVATE kerval_flags)
    else()
        target_link_libraries(${target} PRIVATE kerval_qt_flags)
        set_target_properties(${target} PROPERTIES AUTOMOC ON AUTORCC ON)
        _kerval_precompile(${target} Qt5::Core ${ARGN})
    endif()
endfunction()

function(_kerval_check_levels target level)
    foreach(library IN LISTS ARGN)
        if(NOT TARGET ${library})
            continue()
        endif()
        get_property(other TARGET ${library} PROPERTY KERVAL_LEVEL)
        if(NOT "${other}" STREQUAL "" AND NOT other LESS level)
            message(FATAL_ERROR "${target} (layer ${level}) links ${library} (layer ${other}), which is not lower")
        endif()
    endforeach()
endfunction()

# kerval_add_bench(<target> GROUP <name> SOURCES <files> LINK <libraries> [DEPENDS <programs it starts>])
# A program of scripts/bench; bench/support has the measuring and the table's rows.
function(kerval_add_bench target)
    cmake_parse_arguments(arg "" "GROUP" "SOURCES;LINK;DEPENDS" ${ARGN})
    add_executable(${target} EXCLUDE_FROM_ALL ${arg_SOURCES})
    target_link_libraries(${target} PRIVATE kerval_benchsupport ${arg_LINK})
    _kerval_house_rules(${target} "" Qt5::Core ${arg_LINK})
    set_target_properties(${target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bench/${arg_GROUP}")
    target_compile_definitions(${target} PRIVATE
        KERVAL_SOURCE_DIR="${CMAKE_SOURCE_DIR}" KERVAL_BIN_DIR="${CMAKE_BINARY_DIR}/bin")
    if(arg_DEPENDS)
        add_dependencies(${target} ${arg_DEPENDS})
    endif()
    add_dependencies(kerval_bench ${target})
endfunction()
