#pragma once

#include "qtService/database/StaticFont.h"

#include <QSharedPointer>
#include <QTemporaryDir>

class FontManagementService;

// A started service over an empty catalogue in the test's home; fontconfig sees a private folder and nothing of the
// machine.
class WindowLibrary
{
public:
    WindowLibrary();
    ~WindowLibrary();

    // Records of real files "font<n>.ttf" with the family names "Family <n>", stored at once.
    QList<int> addFonts(int count);
    StaticFontPtr font(int id) const;

    const QSharedPointer<FontManagementService>& service() const { return m_service; }

private:
    QTemporaryDir m_folder;
    QSharedPointer<FontManagementService> m_service;
};
