#pragma once

#include <QHash>
#include <QReadWriteLock>

struct FT_LibraryRec_;
typedef struct FT_LibraryRec_* FT_Library;

// One FreeType library for each thread that opens fonts, because a library must not be shared between threads. They
// live until the application object goes; a thread that gets the id of one that has ended gets its library too.
class FreeTypeLibraryRegistry
{
public:
    static FreeTypeLibraryRegistry& instance();

    FT_Library currentThreadLibrary(); // null when FreeType cannot start

private:
    static void closeAll();

    QReadWriteLock m_lock;
    QHash<Qt::HANDLE, FT_Library> m_libraries;
    bool m_closesAtExit = false;
};
