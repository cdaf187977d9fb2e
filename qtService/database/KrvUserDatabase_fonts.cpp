#include "qtService/database/KrvUserDatabase.h"
#include "qtService/database/UserDatabaseTransaction.h"

#include <QSet>
#include <QSqlDatabase>
#include <QSqlQuery>

// The fonts, notes and families of KrvUserDatabase.

namespace {

QVariantList toVariants(const QStringList& texts)
{
    QVariantList values;
    values.reserve(texts.size());
    for (const QString& text : texts)
        values.append(text);
    return values;
}

QVariantList toVariants(const QList<int>& numbers)
{
    QVariantList values;
    values.reserve(numbers.size());
    for (int number : numbers)
        values.append(number);
    return values;
}

QStringList sorted(const QSet<QString>& texts)
{
    QStringList list(texts.cbegin(), texts.cend());
    list.sort();
    return list;
}

} // namespace

bool KrvUserDatabase::FontData::saysNothing() const
{
    return !isHidden && ranking == 0 && note.isEmpty() && familyName.isEmpty();
}

void KrvUserDatabase::loadFontData()
{
    QHash<FontHash, FontData> data;
    // One text for all fonts that share a note or a family.
    QHash<int, QString> notes;
    QHash<int, QString> families;
    const auto shared = [](QHash<int, QString>& texts, int id, const QVariant& text) {
        auto it = texts.find(id);
        return it != texts.end() ? *it : *texts.insert(id, text.toString());
    };
    QSqlQuery query(connection());
    query.setForwardOnly(true);
    if (prepare(
            query,
            QStringLiteral(
                "SELECT filehash, hidden, ranking, note.id, note.text, user_defined_family.id, family_name FROM font\n"
                "LEFT OUTER JOIN note ON font.id_note = note.id\n"
                "LEFT OUTER JOIN user_defined_family ON font.id_user_defined_family = user_defined_family.id")) &&
        execute(query)) {
        while (query.next()) {
            FontData font;
            font.isHidden = query.value(1).toBool();
            font.ranking = query.value(2).toInt();
            if (!query.isNull(3))
                font.note = shared(notes, query.value(3).toInt(), query.value(4));
            if (!query.isNull(5))
                font.familyName = shared(families, query.value(5).toInt(), query.value(6));
            if (!font.saysNothing())
                data.insert(query.value(0).toString(), font);
        }
    }
    QWriteLocker locker(&m_fontDataLock);
    m_fontData.swap(data);
}

void KrvUserDatabase::changeFontData(const QList<FontHash>& fontHashes, const std::function<void(FontData&)>& change)
{
    m_fontDataTouched = true;
    QWriteLocker locker(&m_fontDataLock);
    for (const FontHash& fontHash : fontHashes) {
        FontData font = m_fontData.value(fontHash);
        change(font);
        if (font.saysNothing())
            m_fontData.remove(fontHash);
        else
            m_fontData.insert(fontHash, font);
    }
}

KrvUserDatabase::FontData KrvUserDatabase::fontData(const FontHash& fontHash) const
{
    QReadLocker locker(&m_fontDataLock);
    return m_fontData.value(fontHash);
}

bool KrvUserDatabase::isHidden(const FontHash& fontHash) const
{
    return fontData(fontHash).isHidden;
}

int KrvUserDatabase::ranking(const FontHash& fontHash) const
{
    return fontData(fontHash).ranking;
}

QString KrvUserDatabase::note(const FontHash& fontHash) const
{
    return fontData(fontHash).note;
}

QList<KrvUserDatabase::FontHash> KrvUserDatabase::allFontHashes() const
{
    QList<FontHash> hashes;
    QSqlQuery query(connection());
    query.setForwardOnly(true);
    if (prepare(query, QStringLiteral("SELECT filehash FROM font")) && execute(query)) {
        while (query.next())
            hashes.append(query.value(0).toString());
    }
    return hashes;
}

bool KrvUserDatabase::ensureFonts(const QList<FontHash>& fontHashes) const
{
    QSqlQuery find(connection());
    QSqlQuery insert(connection());
    if (!prepare(find, QStringLiteral("select id from font where filehash=:filehash")) ||
        !prepare(insert, QStringLiteral("INSERT INTO `font` (filehash, ranking, id_note, hidden)\n"
                                        "VALUES (:filehash, :ranking, :id_note, :hidden)")))
        return false;
    for (const FontHash& fontHash : fontHashes) {
        find.bindValue(0, fontHash);
        if (!execute(find))
            return false;
        const bool known = find.next();
        find.finish();
        if (known)
            continue;
        insert.bindValue(0, fontHash);
        insert.bindValue(1, 0);
        insert.bindValue(2, 0);
        insert.bindValue(3, false);
        if (execInsertQuery(insert) == 0)
            return false;
    }
    return true;
}

bool KrvUserDatabase::updateFonts(const QString& assignment, const QVariant& value,
                                  const QList<FontHash>& fontHashes) const
{
    QSqlQuery query(connection());
    if (!prepare(query, QStringLiteral("UPDATE font\nSET %1\nWHERE filehash=?").arg(assignment)))
        return false;
    for (const FontHash& fontHash : fontHashes) {
        query.bindValue(0, value);
        query.bindValue(1, fontHash);
        if (!execute(query))
            return false;
    }
    return true;
}

bool KrvUserDatabase::setHidden(const QList<FontHash>& fontHashes, bool hidden)
{
    UserDatabaseTransaction transaction(*this);
    if (!transaction.isActive())
        return false;
    // A font without a row is shown already.
    if ((hidden && !ensureFonts(fontHashes)) || !updateFonts(QStringLiteral("hidden=?"), hidden, fontHashes))
        return false;
    changeFontData(fontHashes, [hidden](FontData& font) { font.isHidden = hidden; });
    announce([this, fontHashes, hidden] {
        for (const FontHash& fontHash : fontHashes)
            emit fontHiddenChanged(fontHash, hidden);
    });
    return transaction.commit();
}

bool KrvUserDatabase::setRanking(const FontHash& fontHash, int ranking)
{
    return setRanking(QList<FontHash>{fontHash}, ranking);
}

bool KrvUserDatabase::setRanking(const QList<FontHash>& fontHashes, int ranking)
{
    UserDatabaseTransaction transaction(*this);
    if (!transaction.isActive())
        return false;
    if ((ranking && !ensureFonts(fontHashes)) || !updateFonts(QStringLiteral("ranking=?"), ranking, fontHashes))
        return false;
    changeFontData(fontHashes, [ranking](FontData& font) { font.ranking = ranking; });
    return transaction.commit();
}

QStringList KrvUserDatabase::notes(const QList<FontHash>& fontHashes) const
{
    QSet<QString> texts;
    executeForAll(QStringLiteral("SELECT text FROM\nfont LEFT OUTER JOIN note\nON font.id_note = note.id\n"
                                 "WHERE font.filehash IN (%1)"),
                  {}, toVariants(fontHashes), [&](const QSqlQuery& row) {
                      if (!row.isNull(0))
                          texts.insert(row.value(0).toString());
                  });
    return sorted(texts);
}

int KrvUserDatabase::findOrInsert(const QString& find, const QString& insert, const QString& text) const
{
    QSqlQuery query(connection());
    if (!prepare(query, find))
        return 0;
    query.bindValue(0, text);
    if (!execute(query))
        return 0;
    if (query.next())
        return query.value(0).toInt();
    if (!prepare(query, insert))
        return 0;
    query.bindValue(0, text);
    return execInsertQuery(query);
}

bool KrvUserDatabase::deleteUnusedNotes() const
{
    return execute(QStringLiteral("DELETE FROM note\nWHERE id IN (SELECT note.id\nFROM note LEFT OUTER JOIN font\n"
                                  "ON font.id_note = note.id\nGROUP BY note.id\nHAVING COUNT(font.id) = 0)"));
}

bool KrvUserDatabase::setNote(const QList<FontHash>& fontHashes, const QString& text)
{
    if (text.isEmpty())
        return removeNote(fontHashes);
    UserDatabaseTransaction transaction(*this);
    if (!transaction.isActive())
        return false;
    if (!ensureFonts(fontHashes))
        return false;
    const int noteId = findOrInsert(QStringLiteral("SELECT id\nFROM note\nWHERE text = :text"),
                                    QStringLiteral("INSERT INTO `note` (text)\nVALUES (?)"), text);
    if (noteId == 0 ||
        !executeForAll(QStringLiteral("UPDATE `font`\nSET id_note=?\nWHERE filehash IN (%1)"), {noteId},
                       toVariants(fontHashes)) ||
        !deleteUnusedNotes())
        return false;
    changeFontData(fontHashes, [&text](FontData& font) { font.note = text; });
    announce([this, fontHashes] { emit noteChanged(fontHashes); });
    return transaction.commit();
}

bool KrvUserDatabase::removeNote(const QList<FontHash>& fontHashes)
{
    UserDatabaseTransaction transaction(*this);
    if (!transaction.isActive())
        return false;
    if (!executeForAll(QStringLiteral("UPDATE font\nSET id_note = 0\nWHERE filehash IN (%1)"), {},
                       toVariants(fontHashes)) ||
        !deleteUnusedNotes())
        return false;
    changeFontData(fontHashes, [](FontData& font) { font.note.clear(); });
    announce([this, fontHashes] { emit noteChanged(fontHashes); });
    return transaction.commit();
}

QStringList KrvUserDatabase::userDefinedFamilyNames(const QList<FontHash>& fontHashes) const
{
    QSet<QString> names;
    executeForAll(QStringLiteral("SELECT distinct family_name FROM\nfont LEFT OUTER JOIN user_defined_family\n"
                                 "ON font.id_user_defined_family = user_defined_family.id\n"
                                 "WHERE font.filehash IN (%1)"
                                 " order by 1 asc"),
                  {}, toVariants(fontHashes), [&](const QSqlQuery& row) {
                      if (!row.isNull(0))
                          names.insert(row.value(0).toString());
                  });
    return sorted(names);
}

bool KrvUserDatabase::setUserDefinedFamilyName(const QList<FontHash>& fontHashes, const QString& familyName)
{
    UserDatabaseTransaction transaction(*this);
    if (!transaction.isActive())
        return false;
    int familyId = 0;
    if (!familyName.isEmpty()) {
        familyId =
            findOrInsert(QStringLiteral("SELECT id\nFROM user_defined_family\nWHERE family_name = :family_name"),
                         QStringLiteral("INSERT INTO `user_defined_family` (family_name)\nVALUES (?)"), familyName);
        if (familyId == 0 || !ensureFonts(fontHashes))
            return false;
    }
    // Families that lose their last font stay; only the notes are cleaned here.
    if (!executeForAll(QStringLiteral("UPDATE `font`\nSET id_user_defined_family=?\nWHERE filehash IN (%1)"),
                       {familyId}, toVariants(fontHashes)) ||
        !deleteUnusedNotes())
        return false;
    changeFontData(fontHashes, [&familyName](FontData& font) { font.familyName = familyName; });
    return transaction.commit();
}

QList<KrvUserDatabase::FontHash> KrvUserDatabase::familyFontHashes(const QList<int>& familyIds) const
{
    QList<FontHash> hashes;
    executeForAll(QStringLiteral("SELECT filehash\nFROM font\nWHERE id_user_defined_family IN (%1)"), {},
                  toVariants(familyIds), [&](const QSqlQuery& row) { hashes.append(row.value(0).toString()); });
    return hashes;
}
