#pragma once

#include "qtService/database/FontCollectionInterface.h"
#include "qtService/management/systemfm/SystemFontDescriptor.h"

#include <QHash>
#include <QMutex>
#include <QReadWriteLock>
#include <QSet>
#include <QStringList>

#include <functional>

class FontRepositoryStrategy;
class KrvUserDatabase;
namespace kerval::systemfm {
class SystemFontManager;
}

// The catalogue as the running system sees it: the collection that owns every record. It forwards reads and writes to
// its strategy, merges what user.db and the operating system know of a font into the record, and announces changes.
//
// The strategy keeps its records in memory (the cached one): a record is filled with user data and activity once, when
// it enters, and whenever these change through the repository. Records handed out are the live ones; merging again on
// each read would undo a change between a caller's setter and its updateFonts().
//
// Every operation may be called from any thread. The user database outlives the repository.
class KrvFontRepository : public FontCollectionInterface
{
    Q_OBJECT

public:
    // Without a manager of system fonts it takes the process's own; on the thread that made the repository it follows
    // what becomes active.
    KrvFontRepository(const QSharedPointer<FontRepositoryStrategy>& strategy, KrvUserDatabase* userDatabase,
                      kerval::systemfm::SystemFontManager* systemFonts = nullptr);
    ~KrvFontRepository() override;

    // The repository of the running service; null outside its life. For code that is handed none.
    static QSharedPointer<KrvFontRepository> instance();
    static void setInstance(const QSharedPointer<KrvFontRepository>& repository);

    QList<StaticFontPtr> fonts() const override;
    StaticFontPtr font(int fontId) const override;
    QList<StaticFontPtr> findMatchingFonts(const QSharedPointer<MatchingCriteria>& criteria) const override;
    QSharedPointer<FindMathingFontsCommand>
    createFindMathingFontsCommand(const QSharedPointer<MatchingCriteria>& criteria, bool idsOnly) const override;
    QList<int> findMatchingFontIds(const QSharedPointer<MatchingCriteria>& criteria) const override;
    QList<int> fontIdList() const override;
    bool containsFont(const StaticFontPtr& font) const override;
    bool containsFont(int fontId) const override;
    int fontCount() const override;
    bool hasFonts() const override;

    // Stores new records and gives them their ids. False when the storage did not take all of them; those it took
    // count. What `alongside` stores is stored with them or not at all (FontRepositoryStrategy).
    bool addFonts(const QList<StaticFontPtr>& fonts, const std::function<bool()>& alongside = {});
    bool removeFonts(const QList<StaticFontPtr>& fonts);
    bool removeFont(const StaticFontPtr& font);
    bool removeAll();

    // Writes the named properties, which the caller has already set on the records: user data to user.db, the others to
    // the catalogue. When user.db refuses, the records get their stored user data back and nothing is announced.
    bool updateFonts(const QList<StaticFontPtr>& fonts, const QStringList& changedProperties);

    // Fills activity, hidden flag, note, ranking and family name of records from what is known now.
    void applyUserData(const QList<StaticFontPtr>& fonts) const;

    // Distinct foundry names, the empty one included.
    QStringList foundries() const;
    // Catalogued file -> the face indexes catalogued from it.
    QHash<QString, QList<int>> fileFaces() const;
    QList<int> fontIdsForFile(const QString& fileName) const;

signals:
    void fontSetChanged();
    void foundriesChanged();

private slots:
    void updateActiveFontsList();
    void onFontsAdded(const QList<StaticFontPtr>& fontList);
    void onFontsRemoved(const QList<StaticFontPtr>& fontList);
    void onFontsChanged(const QList<StaticFontPtr>& fontList);

private:
    using ActiveFonts = QSet<kerval::systemfm::SystemFontDescriptor>;

    ActiveFonts systemActiveFonts() const;
    void merge(const ActiveFonts& activeFonts, const QList<StaticFontPtr>& fonts) const;
    bool storeUserData(const QList<StaticFontPtr>& fonts, const QStringList& changedProperties);
    void storeActivity(const QList<StaticFontPtr>& fonts);
    QList<int> countDuplicates(const QList<StaticFontPtr>& fonts, bool added);
    void announceChanged(const QList<int>& fontIds);
    QList<int> recountDuplicates(const QSet<QString>& keys);
    void refreshFoundries();

    mutable QReadWriteLock m_lock; // guards the three tables below
    QSharedPointer<FontRepositoryStrategy> m_strategy;
    KrvUserDatabase* m_userDatabase;
    kerval::systemfm::SystemFontManager* m_systemFonts;
    ActiveFonts m_activeFonts;
    QMultiHash<QString, int> m_duplicateKeys;
    QStringList m_foundries;
    // Held over a change of m_duplicateKeys and the counting after it, so that the last count is the right one.
    QMutex m_duplicatesMutex;
};

using KrvFontRepositoryPtr = QSharedPointer<KrvFontRepository>;
