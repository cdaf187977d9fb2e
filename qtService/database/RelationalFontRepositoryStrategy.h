#pragma once

#include "qtService/database/FontDatabase.h"
#include "qtService/database/FontRepositoryStrategy.h"

#include <atomic>

// The catalogue straight from fms.db: every answer is a statement, nothing is kept.
class RelationalFontRepositoryStrategy : public FontRepositoryStrategy
{
public:
    explicit RelationalFontRepositoryStrategy(const QSharedPointer<FontDatabase>& database);

    // Property name -> column, for the properties that fms.db stores. It decides what addFonts() and updateFonts()
    // write and which conditions SQL can answer; a condition on any other property is put to the id.
    static const QHash<QString, FontDatabase::FontTableColumn>& propertyColumns();

    QSharedPointer<FontDatabase> database() const;

    QList<StaticFontPtr> fonts() override;
    StaticFontPtr font(int id) override;
    QList<StaticFontPtr> findMatchingFonts(const MatchingCriteriaPtr& criteria) override;
    FindMathingFontsCommandPtr createFindMathingFontsCommand(const MatchingCriteriaPtr& criteria,
                                                             bool idsOnly) override;
    QList<int> findMatchingFontIds(const MatchingCriteriaPtr& criteria) override;
    bool addFonts(const QList<StaticFontPtr>& fonts) override;
    bool addFont(const StaticFontPtr& font) override;
    bool updateFonts(const QList<StaticFontPtr>& fonts) override;
    bool updateFont(const StaticFontPtr& font) override;
    bool removeFonts(const QList<StaticFontPtr>& fonts) override;
    bool removeFont(const StaticFontPtr& font) override;
    bool removeAll() override;
    int fontCount() override;
    bool containsFont(int id) override;
    QHash<QString, QList<int>> fileFaces() override;
    QList<int> fontIdList() override;
    QList<int> fontIdsForFile(const QString& fileName) override;
    QStringList foundries() override;
    bool addFonts(const QList<StaticFontPtr>& fonts, const Alongside& alongside) override;

private:
    const QSharedPointer<FontDatabase> m_database;
    // The last reading of all fonts ended early: what is catalogued is not known then, and a scan would add it again.
    std::atomic<bool> m_isUnread{false};
};
