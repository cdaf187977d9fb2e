#pragma once

#include <QHash>
#include <QList>
#include <QObject>
#include <QReadWriteLock>
#include <QScopedPointer>
#include <QSharedPointer>
#include <QStringList>
#include <QVariant>

#include <functional>

class DatabaseConnectionFactory;
class UserDatabaseAccess;
class QSqlDatabase;
class QSqlQuery;

// user.db: the user's own groups, notes, rankings, hidden flags and family names, kept apart from the catalogue so that
// the catalogue can be rebuilt without losing them. Fonts are known by their font hash (fms::StaticFont::fontHash).
//
// The program never deletes the file. One that is no database or is damaged is moved aside under a dated name and a new
// one is begun with what can still be read of it; setAsideFile() names it, for whoever tells the user. Before the first
// upgrade of an older version a copy is kept beside it.
//
// Every operation may be called from any thread after open(): each thread has a connection of its own, and writers take
// turns. What a record shows of a font (hidden flag, ranking, note, family name) is also kept in memory, so that
// merging it into 100,000 records costs no query. Every change is one transaction; its signals follow when the
// outermost transaction has been committed and released, and never for one that was rolled back.
class KrvUserDatabase : public QObject
{
    Q_OBJECT

public:
    using FontHash = QString;

    struct FontData
    {
        bool isHidden = false;
        int ranking = 0;
        QString note;
        QString familyName;

        bool saysNothing() const;
    };

    struct Group
    {
        int id = 0;
        QString name;
        int parentId = 0;
        int fontCount = 0;
    };

    // Conditions that all hold; an empty list is no condition. With font hashes, fontCount counts those only.
    struct GroupFilter
    {
        QList<int> ids;
        QList<int> parentIds;
        QList<FontHash> fontHashes;
        QStringList names;
    };

    explicit KrvUserDatabase(QObject* parent = nullptr);
    ~KrvUserDatabase() override;

    // False when the file cannot be opened, created or upgraded; an older file is then as it was.
    bool open(const QString& fileName);
    bool isOpen() const;
    // Where a damaged file was moved by open(); empty when there was none.
    QString setAsideFile() const;
    // Whether something of it could be taken over.
    bool hasSalvaged() const;
    int userVersion() const;
    // For those who may outlive the database.
    QSharedPointer<const UserDatabaseAccess> access() const;

    // Transactions nest. Between the two calls the thread holds the database's turn to write; both are made on one
    // thread. endTransaction() tells whether the commit was carried out.
    bool beginTransaction();
    bool endTransaction(bool commit);
    // The new row's id; 0 when the insert failed.
    int execInsertQuery(QSqlQuery& query) const;

    FontData fontData(const FontHash& fontHash) const;
    bool isHidden(const FontHash& fontHash) const;
    bool setHidden(const QList<FontHash>& fontHashes, bool hidden);
    int ranking(const FontHash& fontHash) const;
    bool setRanking(const FontHash& fontHash, int ranking);
    bool setRanking(const QList<FontHash>& fontHashes, int ranking);
    QList<FontHash> allFontHashes() const;
    // Gives every font a row that has none: not hidden, without ranking and note.
    bool ensureFonts(const QList<FontHash>& fontHashes) const;

    QString note(const FontHash& fontHash) const;
    // The distinct notes of the fonts, in ascending order.
    QStringList notes(const QList<FontHash>& fontHashes) const;
    bool setNote(const QList<FontHash>& fontHashes, const QString& text);
    bool removeNote(const QList<FontHash>& fontHashes);

    // The distinct names of the fonts, in ascending order; fonts without one give none.
    QStringList userDefinedFamilyNames(const QList<FontHash>& fontHashes) const;
    // An empty name takes the fonts out of their family.
    bool setUserDefinedFamilyName(const QList<FontHash>& fontHashes, const QString& familyName);
    QList<FontHash> familyFontHashes(const QList<int>& familyIds) const;

    // The new group's id; 0 on failure. Parent 0 is the top level.
    int addGroup(const QString& name, int parentId);
    // Takes the whole sub-tree along. False when there is no such group.
    bool removeGroup(int groupId);
    // A null name or a parent below 0 stays as it is. False when there is no such group or it would become its own
    // descendant.
    bool updateGroup(int groupId, const QString& name, int parentId);
    bool renameGroup(int groupId, const QString& name);
    bool clearGroup(int groupId);
    // All or none.
    bool clearGroups(const QList<int>& groupIds);
    // False when there is no such group.
    bool addFontsToGroup(const QList<FontHash>& fontHashes, int groupId);
    bool removeFontsFromGroup(const QList<FontHash>& fontHashes, int groupId);
    QList<Group> groups() const;
    QList<Group> groups(const GroupFilter& filter) const;
    QString groupName(int groupId) const;
    QList<FontHash> groupFontHashes(const QList<int>& groupIds) const;
    // Of every group that has any.
    QHash<int, QList<FontHash>> fontHashesOfGroups() const;

signals:
    void noteChanged(const QList<KrvUserDatabase::FontHash>& fontHashList);
    void groupAdded(int groupId);
    void groupRemoved(int groupId);
    void groupRenamed(int groupId);
    void groupCleared(int groupId);
    void fontGroupsChanged(const QList<KrvUserDatabase::FontHash>& fontHashList, int groupId);
    void fontHiddenChanged(const KrvUserDatabase::FontHash& fontHash, bool isHidden);

private:
    using RowReader = std::function<void(const QSqlQuery&)>;

    QSqlDatabase connection() const;
    bool prepare(QSqlQuery& query, const QString& statement) const;
    bool execute(QSqlQuery& query) const;
    bool execute(const QString& statement) const;
    bool executeForAll(const QString& statement, const QVariantList& leading, const QVariantList& values,
                       const RowReader& read = {}) const;
    void announce(const std::function<void()>& signal);
    bool updateFonts(const QString& assignment, const QVariant& value, const QList<FontHash>& fontHashes) const;
    bool deleteUnusedNotes() const;
    int findOrInsert(const QString& find, const QString& insert, const QString& text) const;
    bool groupExists(int groupId) const;
    QList<int> subTree(int groupId) const;
    void loadFontData();
    void changeFontData(const QList<FontHash>& fontHashes, const std::function<void(FontData&)>& change);

    const QSharedPointer<UserDatabaseAccess> m_access;
    QScopedPointer<DatabaseConnectionFactory> m_connections;
    QString m_setAsideFile;
    bool m_hasSalvaged = false;

    // A writer holds the factory's write mutex from the outermost beginTransaction() to its end; what follows is its
    // own meanwhile.
    struct Savepoint
    {
        QString name;
        int announcements;
    };
    QList<Savepoint> m_savepoints;
    QList<std::function<void()>> m_announcements;
    bool m_fontDataTouched = false;

    mutable QReadWriteLock m_fontDataLock;
    QHash<FontHash, FontData> m_fontData; // only fonts with anything to say
};
