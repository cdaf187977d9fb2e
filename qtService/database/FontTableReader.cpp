#include "qtService/database/FontTableReader.h"

#include "qtService/database/StaticFontData.h"

#include <QSqlDriver>
#include <QSqlQuery>

#include <sqlite3.h>

#include <array>
#include <memory>

using fms::SharedText;
using fms::StaticFontData;

namespace {

using Db = FontDatabase;

template <class Member>
struct ColumnOf
{
    Db::FontTableColumn column;
    Member StaticFontData::*member;
};

const ColumnOf<SharedText> sharedColumns[] = {
    {Db::face_name, &StaticFontData::familyName},
    {Db::style, &StaticFontData::styleName},
    {Db::menu_family_name, &StaticFontData::menuFamilyName},
    {Db::menu_style_name, &StaticFontData::menuStyleName},
    {Db::version, &StaticFontData::version},
    {Db::vendor, &StaticFontData::vendor},
    {Db::vendor_url, &StaticFontData::vendorUrl},
    {Db::designer, &StaticFontData::designer},
    {Db::designer_url, &StaticFontData::designerUrl},
    {Db::description, &StaticFontData::description},
    {Db::trademark, &StaticFontData::trademark},
    {Db::other_info, &StaticFontData::otherInfo},
    {Db::format, &StaticFontData::format},
    {Db::foundry, &StaticFontData::foundry},
    {Db::license, &StaticFontData::license},
    {Db::license_url, &StaticFontData::licenseUrl},
    {Db::other_info2, &StaticFontData::otherInfo2},
    {Db::online_source, &StaticFontData::onlineSource},
};

const ColumnOf<QString> ownColumns[] = {
    {Db::file_name, &StaticFontData::fileName},
    {Db::original_file_name, &StaticFontData::originalFileName},
    {Db::full_name, &StaticFontData::fullName},
    {Db::ps_name, &StaticFontData::postScriptName},
    {Db::sfnt_ps_name, &StaticFontData::sfntPostScriptName},
    {Db::filehash, &StaticFontData::fileHash},
    {Db::latin_metrics_correction, &StaticFontData::latinMetricsCorrection},
    {Db::full_metrics_correction, &StaticFontData::fullMetricsCorrection},
};

const ColumnOf<int> numberColumns[] = {
    {Db::id, &StaticFontData::id},
    {Db::hwi, &StaticFontData::hwi},
    {Db::hhe, &StaticFontData::hhe},
    {Db::hwe, &StaticFontData::hwe},
    {Db::italic_angle, &StaticFontData::italicAngle},
    {Db::specific_width, &StaticFontData::specificWidth},
    {Db::specific_height, &StaticFontData::specificHeight},
    {Db::sc_all, &StaticFontData::smartChoiceAll},
    {Db::sc_body, &StaticFontData::smartChoiceBody},
    {Db::sc_head, &StaticFontData::smartChoiceHead},
    {Db::face_index, &StaticFontData::faceIndex},
    {Db::online_id, &StaticFontData::onlineId},
};

const ColumnOf<bool> flagColumns[] = {
    {Db::bold, &StaticFontData::isBold},
    {Db::italic, &StaticFontData::isItalic},
    {Db::deleted, &StaticFontData::isDeleted},
    {Db::is_purchased, &StaticFontData::isPurchased},
};

const ColumnOf<uchar> byteColumns[] = {
    {Db::style_field, &StaticFontData::styleField},
    {Db::serif_style, &StaticFontData::serifStyle},
};

const ColumnOf<fms::SecondsText> secondsColumns[] = {
    {Db::added, &StaticFontData::dateAdded},
    {Db::used, &StaticFontData::dateLastUsed},
    {Db::downloaded, &StaticFontData::dateDownloaded},
};

const ColumnOf<QDateTime> momentColumns[] = {
    {Db::activated, &StaticFontData::dateActivated},
    {Db::deactivated, &StaticFontData::dateDeactivated},
    {Db::last_seen, &StaticFontData::dateLastSeen},
};

using Statement = std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)>;

// Text columns come as views of SQLite's own bytes, good until the next step.
QByteArray bytesOf(sqlite3_stmt* statement, int field)
{
    const auto* const text = reinterpret_cast<const char*>(sqlite3_column_text(statement, field));
    return text ? QByteArray::fromRawData(text, sqlite3_column_bytes(statement, field)) : QByteArray();
}

// Turns bytes into shared texts, knowing those it has met before.
class TextRecogniser
{
public:
    SharedText text(const QByteArray& bytes)
    {
        if (bytes.isEmpty())
            return SharedText();
        // Faces of one family were stored one after the other.
        if (bytes == m_lastBytes)
            return m_lastText;
        const auto known = m_known.constFind(bytes);
        if (known != m_known.constEnd()) {
            m_lastBytes = known.key();
            return m_lastText = known.value();
        }
        const SharedText made(QString::fromUtf8(bytes));
        if (m_knownBytes < MostBytes) {
            const QByteArray copy(bytes.constData(), bytes.size());
            m_known.insert(copy, made);
            m_knownBytes += copy.size();
            m_lastBytes = copy;
            m_lastText = made;
        }
        return made;
    }

private:
    // Where texts do not repeat, remembering them all would only cost memory.
    static constexpr qint64 MostBytes = 8 << 20;

    QHash<QByteArray, SharedText> m_known;
    qint64 m_knownBytes = 0;
    QByteArray m_lastBytes;
    SharedText m_lastText;
};

// Making local time of seconds asks the time zone's tables; most faces have the same few moments, or none.
class MomentCache
{
public:
    QDateTime moment(int seconds)
    {
        if (seconds != m_seconds) {
            m_seconds = seconds;
            m_moment = fms::fromUnixSeconds(seconds);
        }
        return m_moment;
    }

private:
    int m_seconds = 0;
    QDateTime m_moment = fms::fromUnixSeconds(0);
};

// The fields of the statement are the columns of the tables above, one after the other.
class RowReader
{
public:
    QStringList columnNames(const FontDatabase& database) const
    {
        QStringList names;
        const auto add = [&](const auto& columns) {
            for (const auto& column : columns)
                names.append(database.fontColumnName(column.column));
        };
        add(sharedColumns);
        add(ownColumns);
        add(numberColumns);
        add(flagColumns);
        add(byteColumns);
        add(secondsColumns);
        add(momentColumns);
        names.append(database.fontColumnName(Db::supported_subsets));
        return names;
    }

    StaticFontPtr read(sqlite3_stmt* row)
    {
        auto font = StaticFontPtr::create();
        StaticFontData& data = fms::StaticFontAccess::unshared(*font);
        int field = 0;
        for (size_t i = 0; i < std::size(sharedColumns); ++i)
            data.*sharedColumns[i].member = m_texts[i].text(bytesOf(row, field++));
        for (const auto& column : ownColumns)
            data.*column.member = QString::fromUtf8(bytesOf(row, field++));
        for (const auto& column : numberColumns)
            data.*column.member = sqlite3_column_int(row, field++);
        for (const auto& column : flagColumns)
            data.*column.member = sqlite3_column_int(row, field++) != 0;
        for (const auto& column : byteColumns)
            data.*column.member = uchar(sqlite3_column_int(row, field++));
        for (const auto& column : secondsColumns)
            (data.*column.member).setSeconds(sqlite3_column_int(row, field++));
        for (size_t i = 0; i < std::size(momentColumns); ++i)
            data.*momentColumns[i].member = m_moments[i].moment(sqlite3_column_int(row, field++));
        data.supportedSubsets.setText(QString::fromUtf8(bytesOf(row, field)));
        data.activityType = -1;
        data.shareEqualTexts();
        return font;
    }

private:
    std::array<TextRecogniser, std::size(sharedColumns)> m_texts;
    std::array<MomentCache, std::size(momentColumns)> m_moments;
};

} // namespace

FontTableReader::FontTableReader(const FontDatabase& database)
    : m_database(database)
{
    const QSqlDatabase connection = database.connectionFactory()->database();
    const QVariant handle = connection.driver()->handle();
    if (!handle.isValid() || qstrcmp(handle.typeName(), "sqlite3*") != 0)
        return;
    QSqlQuery query(connection);
    if (query.exec(QStringLiteral("SELECT sqlite_source_id()")) && query.next() &&
        query.value(0).toString() == QLatin1String(sqlite3_sourceid()))
        m_handle = *static_cast<sqlite3* const*>(handle.constData());
}

bool FontTableReader::isUsable() const
{
    return m_handle != nullptr;
}

bool FontTableReader::read(QList<StaticFontPtr>& fonts)
{
    RowReader reader;
    const QByteArray sql = m_database.fontTransformation()
                               ->transformStatement(QStringLiteral("SELECT %1 FROM font ORDER BY id")
                                                        .arg(reader.columnNames(m_database).join(QLatin1Char(','))))
                               .toUtf8();
    sqlite3_stmt* prepared = nullptr;
    m_errorCode = sqlite3_prepare_v2(static_cast<sqlite3*>(m_handle), sql.constData(), sql.size(), &prepared, nullptr);
    const Statement statement(prepared, sqlite3_finalize);
    if (m_errorCode != SQLITE_OK)
        return false;
    int step = 0;
    while ((step = sqlite3_step(statement.get())) == SQLITE_ROW)
        fonts.append(reader.read(statement.get()));
    m_errorCode = step == SQLITE_DONE ? SQLITE_OK : step;
    return m_errorCode == SQLITE_OK;
}

int FontTableReader::errorCode() const
{
    return m_errorCode;
}
