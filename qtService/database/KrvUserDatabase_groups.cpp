#include "qtService/database/KrvUserDatabase.h"
#include "qtService/database/UserDatabaseTransaction.h"

#include <QMap>
#include <QSet>
#include <QSqlDatabase>
#include <QSqlQuery>

// The groups of KrvUserDatabase.

int KrvUserDatabase::addGroup(const QString& name, int parentId)
{
    UserDatabaseTransaction transaction(*this);
    if (!transaction.isActive())
        return 0;
    QSqlQuery query(connection());
    if (!prepare(query, QStringLiteral("INSERT INTO `group` (name, id_parent)\nVALUES (:name, :id_parent)")))
        return 0;
    query.bindValue(0, name);
    query.bindValue(1, parentId);
    const int groupId = execInsertQuery(query);
    if (groupId == 0)
        return 0;
    announce([this, groupId] { emit groupAdded(groupId); });
    return transaction.commit() ? groupId : 0;
}

QList<int> KrvUserDatabase::subTree(int groupId) const
{
    QList<int> ids;
    QSqlQuery query(connection());
    if (prepare(query, QStringLiteral("WITH RECURSIVE tree(id) AS (SELECT id FROM `group` WHERE id = ?\n"
                                      "UNION SELECT `group`.id FROM `group` JOIN tree ON `group`.id_parent = tree.id)\n"
                                      "SELECT id FROM tree"))) {
        query.bindValue(0, groupId);
        if (execute(query)) {
            while (query.next())
                ids.append(query.value(0).toInt());
        }
    }
    return ids;
}

bool KrvUserDatabase::groupExists(int groupId) const
{
    QSqlQuery query(connection());
    if (!prepare(query, QStringLiteral("SELECT id FROM `group`\nWHERE id=:id")))
        return false;
    query.bindValue(0, groupId);
    return execute(query) && query.next();
}

bool KrvUserDatabase::removeGroup(int groupId)
{
    UserDatabaseTransaction transaction(*this);
    if (!transaction.isActive())
        return false;
    const QList<int> removed = subTree(groupId);
    if (removed.isEmpty())
        return false;
    QSqlQuery query(connection());
    if (!prepare(query, QStringLiteral("DELETE FROM `group`\nWHERE id=:id")))
        return false;
    query.bindValue(0, groupId);
    if (!execute(query))
        return false;
    announce([this, removed] {
        for (int id : removed)
            emit groupRemoved(id);
    });
    return transaction.commit();
}

bool KrvUserDatabase::updateGroup(int groupId, const QString& name, int parentId)
{
    UserDatabaseTransaction transaction(*this);
    if (!transaction.isActive())
        return false;
    QStringList assignments;
    if (!name.isNull())
        assignments.append(QStringLiteral("name=:name"));
    if (parentId >= 0)
        assignments.append(QStringLiteral("id_parent=:id_parent"));
    if (assignments.isEmpty() || !groupExists(groupId) || (parentId > 0 && subTree(groupId).contains(parentId)))
        return false;
    QSqlQuery query(connection());
    if (!prepare(query,
                 QStringLiteral("UPDATE `group`\nSET %1\nWHERE id=:id").arg(assignments.join(QStringLiteral(", ")))))
        return false;
    if (!name.isNull())
        query.bindValue(QStringLiteral(":name"), name);
    if (parentId >= 0)
        query.bindValue(QStringLiteral(":id_parent"), parentId);
    query.bindValue(QStringLiteral(":id"), groupId);
    if (!execute(query))
        return false;
    announce([this, groupId] { emit groupRenamed(groupId); });
    return transaction.commit();
}

bool KrvUserDatabase::renameGroup(int groupId, const QString& name)
{
    return !name.isEmpty() && updateGroup(groupId, name, -1);
}

bool KrvUserDatabase::clearGroup(int groupId)
{
    return clearGroups({groupId});
}

bool KrvUserDatabase::clearGroups(const QList<int>& groupIds)
{
    UserDatabaseTransaction transaction(*this);
    if (!transaction.isActive())
        return false;
    QVariantList ids;
    for (const int groupId : groupIds)
        ids.append(groupId);
    if (!executeForAll(QStringLiteral("DELETE FROM `belongs_to`\nWHERE id_group IN (%1)"), {}, ids))
        return false;
    announce([this, groupIds] {
        for (const int groupId : groupIds)
            emit groupCleared(groupId);
    });
    return transaction.commit();
}

bool KrvUserDatabase::addFontsToGroup(const QList<FontHash>& fontHashes, int groupId)
{
    UserDatabaseTransaction transaction(*this);
    if (!transaction.isActive())
        return false;
    if (!groupExists(groupId) || !ensureFonts(fontHashes))
        return false;
    QSqlQuery query(connection());
    if (!prepare(query, QStringLiteral("INSERT OR REPLACE INTO `belongs_to` (id_font, id_group)\n"
                                       "VALUES ((SELECT id FROM `font` WHERE filehash = :filehash), :id_group)")))
        return false;
    for (const FontHash& fontHash : fontHashes) {
        query.bindValue(0, fontHash);
        query.bindValue(1, groupId);
        if (!execute(query))
            return false;
    }
    announce([this, fontHashes, groupId] { emit fontGroupsChanged(fontHashes, groupId); });
    return transaction.commit();
}

bool KrvUserDatabase::removeFontsFromGroup(const QList<FontHash>& fontHashes, int groupId)
{
    UserDatabaseTransaction transaction(*this);
    if (!transaction.isActive())
        return false;
    QSqlQuery query(connection());
    if (!prepare(query, QStringLiteral("DELETE FROM `belongs_to`\nWHERE (SELECT id FROM `font` WHERE filehash = "
                                       ":filehash) = id_font AND id_group = :id_group")))
        return false;
    for (const FontHash& fontHash : fontHashes) {
        query.bindValue(0, fontHash);
        query.bindValue(1, groupId);
        if (!execute(query))
            return false;
    }
    announce([this, fontHashes, groupId] { emit fontGroupsChanged(fontHashes, groupId); });
    return transaction.commit();
}

QList<KrvUserDatabase::Group> KrvUserDatabase::groups() const
{
    return groups(GroupFilter());
}

QList<KrvUserDatabase::Group> KrvUserDatabase::groups(const GroupFilter& filter) const
{
    QString statement =
        QStringLiteral("SELECT 'group'.'id', 'group'.'name', 'group'.'id_parent', COUNT(belongs_to.id_font)\n"
                       "FROM ('group' LEFT OUTER JOIN belongs_to ON 'group'.'id' = belongs_to.id_group\n)\n"
                       "LEFT OUTER JOIN font ON belongs_to.id_font = font.id\n");
    // Ids, parents and names are few and kept in one list each; the font hashes may be thousands and come in chunks,
    // whose counts add up.
    QStringList conditions;
    QVariantList leading;
    const auto addCondition = [&](const QString& column, const auto& values) {
        if (values.isEmpty())
            return;
        QStringList marks;
        for (const auto& value : values) {
            marks.append(QStringLiteral("?"));
            leading.append(value);
        }
        conditions.append(column + QLatin1String(" IN (") + marks.join(QLatin1Char(',')) + QLatin1Char(')'));
    };
    addCondition(QStringLiteral("'group'.'id'"), filter.ids);
    addCondition(QStringLiteral("'group'.'id_parent'"), filter.parentIds);
    addCondition(QStringLiteral("'group'.'name'"), filter.names);
    if (!filter.fontHashes.isEmpty())
        conditions.append(QStringLiteral("'font'.'filehash' IN (%1)"));
    if (!conditions.isEmpty())
        statement += QLatin1String("WHERE ") + conditions.join(QStringLiteral(" AND "));
    statement += QLatin1String("\nGROUP BY 'group'.'id', 'group'.'name', 'group'.'id_parent'\n");

    QMap<int, Group> found;
    const auto read = [&](const QSqlQuery& row) {
        Group& group = found[row.value(0).toInt()];
        group.id = row.value(0).toInt();
        group.name = row.value(1).toString();
        group.parentId = row.value(2).toInt();
        group.fontCount += row.value(3).toInt();
    };
    if (!filter.fontHashes.isEmpty()) {
        QVariantList hashes;
        for (const FontHash& fontHash : filter.fontHashes)
            hashes.append(fontHash);
        executeForAll(statement, leading, hashes, read);
        return found.values();
    }
    QSqlQuery query(connection());
    if (prepare(query, statement)) {
        for (int i = 0; i < leading.size(); ++i)
            query.bindValue(i, leading.at(i));
        if (execute(query)) {
            while (query.next())
                read(query);
        }
    }
    return found.values();
}

QString KrvUserDatabase::groupName(int groupId) const
{
    QSqlQuery query(connection());
    if (!prepare(query, QStringLiteral("SELECT name FROM `group`\nWHERE id=:id")))
        return QString();
    query.bindValue(0, groupId);
    return execute(query) && query.next() ? query.value(0).toString() : QString();
}

QList<KrvUserDatabase::FontHash> KrvUserDatabase::groupFontHashes(const QList<int>& groupIds) const
{
    QVariantList ids;
    for (int id : groupIds)
        ids.append(id);
    QList<FontHash> hashes;
    executeForAll(QStringLiteral("SELECT filehash\nFROM ('group' LEFT OUTER JOIN belongs_to ON 'group'.'id' = "
                                 "belongs_to.id_group)\nLEFT OUTER JOIN font ON belongs_to.id_font = font.id\n"
                                 "WHERE belongs_to.id_group IN (%1)"),
                  {}, ids, [&](const QSqlQuery& row) { hashes.append(row.value(0).toString()); });
    return hashes;
}

QHash<int, QList<KrvUserDatabase::FontHash>> KrvUserDatabase::fontHashesOfGroups() const
{
    QHash<int, QList<FontHash>> hashes;
    QSqlQuery query(connection());
    query.setForwardOnly(true);
    if (prepare(query, QStringLiteral("SELECT id_group, filehash\nFROM belongs_to JOIN font\n"
                                      "ON belongs_to.id_font = font.id")) &&
        execute(query)) {
        while (query.next())
            hashes[query.value(0).toInt()].append(query.value(1).toString());
    }
    return hashes;
}
