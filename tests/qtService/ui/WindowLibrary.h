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
    // As if the program were quit and started again.
    void restart();

    // Records of real files "font<n>.ttf" with the family names "Family <n>", stored at once.
    QList<int> addFonts(int count);
    // A record of any file, real or not; its id.
    int addFont(const QString& file, const QString& familyName, const QString& postScriptName);
    StaticFontPtr font(int id) const;
    QString path(const QString& name) const { return m_folder.filePath(name); }

    const QSharedPointer<FontManagementService>& service() const { return m_service; }

private:
    void start();
    void stop();
    static StaticFontPtr makeFont(const QString& file, const QString& familyName, const QString& postScriptName);

    QTemporaryDir m_folder;
    QSharedPointer<FontManagementService> m_service;
};
