#pragma once

#include "qtService/database/KrvFontRepository.h"
#include "qtService/database/KrvUserDatabase.h"

#include <QTemporaryDir>

class FakeFontManagerStrategy;
class FontDatabase;
class FontRepositoryStrategy;

// A repository over fms.db and user.db in a temporary folder, with the system's fonts in memory.
class TestLibrary
{
public:
    TestLibrary();
    ~TestLibrary();

    // A record as the adder makes them; its file hash is made from `content`, its dates from `added` (Unix seconds).
    static StaticFontPtr makeFont(const QString& fileName, const QString& content, int faceIndex = 0,
                                  uint added = 1000000);
    QList<int> addFonts(const QList<StaticFontPtr>& fonts);

    // Ends the repository and both databases and begins them anew over the same files.
    void restart();

    QSharedPointer<FontRepositoryStrategy> strategy;
    QScopedPointer<KrvUserDatabase> userDatabase;
    QSharedPointer<KrvFontRepository> repository;
    FakeFontManagerStrategy* systemFonts; // owned by the manager
    QScopedPointer<kerval::systemfm::SystemFontManager> systemFontManager;

private:
    QTemporaryDir m_folder;
    QSharedPointer<FontDatabase> m_fontDatabase;
};
