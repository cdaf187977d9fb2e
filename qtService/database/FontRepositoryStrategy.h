#pragma once

#include "qtService/database/FindMathingFontsCommand.h"
#include "qtService/database/MatchingCriteria.h"
#include "qtService/database/StaticFont.h"

#include <QHash>

#include <functional>

// The storage behind the catalogue. Any thread may call it. Writers report whether the storage took the change; a
// change that it refused leaves records and strategy as they were, but for addFonts(): records that found a place get
// their ids and count, the others keep StaticFont::NewId.
class FontRepositoryStrategy
{
public:
    using Alongside = std::function<bool()>;

    virtual ~FontRepositoryStrategy() = default;

    virtual QList<StaticFontPtr> fonts() = 0;
    // Null when there is no such font.
    virtual StaticFontPtr font(int id) = 0;
    virtual QList<StaticFontPtr> findMatchingFonts(const MatchingCriteriaPtr& criteria) = 0;
    // Not started.
    virtual FindMathingFontsCommandPtr createFindMathingFontsCommand(const MatchingCriteriaPtr& criteria,
                                                                     bool idsOnly) = 0;
    virtual QList<int> findMatchingFontIds(const MatchingCriteriaPtr& criteria) = 0;
    virtual bool addFonts(const QList<StaticFontPtr>& fonts) = 0;
    virtual bool addFont(const StaticFontPtr& font) = 0;
    virtual bool updateFonts(const QList<StaticFontPtr>& fonts) = 0;
    virtual bool updateFont(const StaticFontPtr& font) = 0;
    virtual bool removeFonts(const QList<StaticFontPtr>& fonts) = 0;
    virtual bool removeFont(const StaticFontPtr& font) = 0;
    virtual bool removeAll() = 0;
    virtual int fontCount() = 0;
    virtual bool containsFont(int id) = 0;
    // For every catalogued file the face indexes catalogued from it. The key is the file name as the platform compares
    // paths: lower-cased where it ignores case, as it stands where it does not.
    virtual QHash<QString, QList<int>> fileFaces() = 0;
    virtual QList<int> fontIdList() = 0;
    virtual QList<int> fontIdsForFile(const QString& fileName) = 0;
    // The distinct foundry names.
    virtual QStringList foundries() = 0;
    // Stores both the fonts and what `alongside` stores, or neither. It is called when the fonts have their ids, and
    // takes them back by answering false; it must not use the strategy.
    virtual bool addFonts(const QList<StaticFontPtr>& fonts, const Alongside& alongside) = 0;
};
