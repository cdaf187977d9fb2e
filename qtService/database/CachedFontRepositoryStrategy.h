#pragma once

#include "qtService/database/FontRepositoryStrategy.h"

#include <QMutex>
#include <QReadWriteLock>

// The catalogue in memory: reads are answered from the records kept here, writes go to the strategy below first and
// reach the cache once that has taken them, so no reader sees a record without an id. The constructor loads every
// record. Records are handed out as they are kept: a change made to one is seen by all who hold it.
class CachedFontRepositoryStrategy : public FontRepositoryStrategy
{
public:
    explicit CachedFontRepositoryStrategy(const QSharedPointer<FontRepositoryStrategy>& storage);

    // In ascending order of ids; shares the list that is kept, so that a snapshot costs nothing.
    QList<StaticFontPtr> fonts() override;
    StaticFontPtr font(int id) override;
    // None when no record has the hash; two when copies of a file have paths that differ only in case.
    QList<StaticFontPtr> fontsForHash(const QString& fontHash);
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
    void insertRecords(const QList<StaticFontPtr>& fonts);
    void addFaces(const QList<StaticFontPtr>& fonts);
    void refreshFoundries();
    QList<StaticFontPtr> candidates(const MatchingCriteriaPtr& criteria);
    QList<StaticFontPtr> fontsNamed(const QVariantList& elements);
    QList<StaticFontPtr> fontsHashed(const QVariantList& elements);

    const QSharedPointer<FontRepositoryStrategy> m_storage;
    // Held by a writer from the storage to the cache, so that both see changes in one order.
    QMutex m_writers;
    QReadWriteLock m_lock; // guards what follows
    QHash<int, StaticFontPtr> m_byId;
    // Once m_hashesKnown. Two copies of a file whose paths differ only in case have one hash.
    QMultiHash<QString, StaticFontPtr> m_byHash;
    QList<StaticFontPtr> m_list; // ascending ids
    bool m_hashesKnown = false;
    QStringList m_foundries;
    QHash<QString, QList<int>> m_fileFaces; // once m_facesKnown
    bool m_facesKnown = false;
};
