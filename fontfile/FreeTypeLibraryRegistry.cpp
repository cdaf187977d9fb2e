#include "fontfile/FreeTypeLibraryRegistry.h"

#include <QCoreApplication>
#include <QThread>

#include <ft2build.h>
#include FT_FREETYPE_H

FreeTypeLibraryRegistry& FreeTypeLibraryRegistry::instance()
{
    // Never destroyed: pool threads may still render while static objects go.
    static auto* const registry = new FreeTypeLibraryRegistry;
    return *registry;
}

FT_Library FreeTypeLibraryRegistry::currentThreadLibrary()
{
    const Qt::HANDLE thread = QThread::currentThreadId();
    {
        QReadLocker locker(&m_lock);
        const auto found = m_libraries.constFind(thread);
        if (found != m_libraries.cend())
            return *found;
    }
    FT_Library library = nullptr;
    if (FT_Init_FreeType(&library) != 0)
        return nullptr;
    QWriteLocker locker(&m_lock);
    if (!m_closesAtExit) {
        qAddPostRoutine(&FreeTypeLibraryRegistry::closeAll);
        m_closesAtExit = true;
    }
    m_libraries.insert(thread, library);
    return library;
}

void FreeTypeLibraryRegistry::closeAll()
{
    FreeTypeLibraryRegistry& self = instance();
    QWriteLocker locker(&self.m_lock);
    for (FT_Library library : qAsConst(self.m_libraries))
        FT_Done_FreeType(library);
    self.m_libraries.clear();
    self.m_closesAtExit = false; // an application object has its post routines only once
}
