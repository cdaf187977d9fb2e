#include "qtService/database/RelationalFontRepositoryStrategy.h"

#include "qtService/database/DatabaseTableGateway.h"
#include "qtService/database/DatabaseTransaction.h"
#include "qtService/database/FontDatabaseFile.h"
#include "qtService/database/FontTableReader.h"
#include "qtService/database/ObjectPropertyRecordReadStrategy.h"
#include "qtService/database/RecordListFontFactory.h"
#include "qtService/database/RelationalFindMathingFontsCommand.h"
#include "qtService/database/platform_paths.h"

#include <QDebug>

namespace {

using Db = FontDatabase;
using Gateway = DatabaseTableGateway<Db::FontTableColumn>;
using FontRows = ObjectPropertyRecordReadStrategy<Db::FontTableColumn, fms::StaticFont>;

const QHash<Db::FontTableColumn, QString>& columnProperties()
{
    static const QHash<Db::FontTableColumn, QString> properties = [] {
        QHash<Db::FontTableColumn, QString> table;
        const auto& columns = RelationalFontRepositoryStrategy::propertyColumns();
        for (auto it = columns.cbegin(); it != columns.cend(); ++it)
            table.insert(it.value(), it.key());
        return table;
    }();
    return properties;
}

// Every mapped column but the id, which the table gives.
FontRows writtenRows(const QList<StaticFontPtr>& fonts)
{
    QList<Db::FontTableColumn> columns = columnProperties().keys();
    columns.removeOne(Db::id);
    std::sort(columns.begin(), columns.end());
    return FontRows(fonts, columns, columnProperties());
}

} // namespace

RelationalFontRepositoryStrategy::RelationalFontRepositoryStrategy(const QSharedPointer<FontDatabase>& database)
    : m_database(database)
{
}

const QHash<QString, FontDatabase::FontTableColumn>& RelationalFontRepositoryStrategy::propertyColumns()
{
    static const QHash<QString, Db::FontTableColumn> columns{
        {QStringLiteral("id"), Db::id},
        {QStringLiteral("activityType"), Db::active},
        {QStringLiteral("familyName"), Db::face_name},
        {QStringLiteral("fileName"), Db::file_name},
        {QStringLiteral("originalFileName"), Db::original_file_name},
        {QStringLiteral("styleName"), Db::style},
        {QStringLiteral("postScriptName"), Db::ps_name},
        {QStringLiteral("sfntPostScriptName"), Db::sfnt_ps_name},
        {QStringLiteral("menuFamilyName"), Db::menu_family_name},
        {QStringLiteral("menuStyleName"), Db::menu_style_name},
        {QStringLiteral("fullName"), Db::full_name},
        {QStringLiteral("isBold"), Db::bold},
        {QStringLiteral("isItalic"), Db::italic},
        {QStringLiteral("isDeleted"), Db::deleted},
        {QStringLiteral("styleField"), Db::style_field},
        {QStringLiteral("serifStyle"), Db::serif_style},
        {QStringLiteral("otherInfo2"), Db::other_info2},
        {QStringLiteral("hwi"), Db::hwi},
        {QStringLiteral("hhe"), Db::hhe},
        {QStringLiteral("hwe"), Db::hwe},
        {QStringLiteral("smartChoiceAll"), Db::sc_all},
        {QStringLiteral("smartChoiceBody"), Db::sc_body},
        {QStringLiteral("smartChoiceHead"), Db::sc_head},
        {QStringLiteral("otherInfo"), Db::other_info},
        {QStringLiteral("supportedSubsets"), Db::supported_subsets},
        {QStringLiteral("italicAngle"), Db::italic_angle},
        {QStringLiteral("specificWidth"), Db::specific_width},
        {QStringLiteral("specificHeight"), Db::specific_height},
        {QStringLiteral("version"), Db::version},
        {QStringLiteral("vendor"), Db::vendor},
        {QStringLiteral("vendorUrl"), Db::vendor_url},
        {QStringLiteral("designer"), Db::designer},
        {QStringLiteral("designerUrl"), Db::designer_url},
        {QStringLiteral("description"), Db::description},
        {QStringLiteral("trademark"), Db::trademark},
        {QStringLiteral("format"), Db::format},
        {QStringLiteral("foundry"), Db::foundry},
        {QStringLiteral("dateAdded"), Db::added},
        {QStringLiteral("dateLastUsed"), Db::used},
        {QStringLiteral("dateLastSeen"), Db::last_seen},
        {QStringLiteral("dateActivated"), Db::activated},
        {QStringLiteral("dateDeactivated"), Db::deactivated},
        {QStringLiteral("dateDownloaded"), Db::downloaded},
        {QStringLiteral("license"), Db::license},
        {QStringLiteral("licenseUrl"), Db::license_url},
        {QStringLiteral("fileHash"), Db::filehash},
        {QStringLiteral("latinMetricsCorrection"), Db::latin_metrics_correction},
        {QStringLiteral("fullMetricsCorrection"), Db::full_metrics_correction},
        {QStringLiteral("faceIndex"), Db::face_index},
        {QStringLiteral("onlineSource"), Db::online_source},
        {QStringLiteral("onlineId"), Db::online_id},
        {QStringLiteral("isPurchased"), Db::is_purchased}};
    return columns;
}

QSharedPointer<FontDatabase> RelationalFontRepositoryStrategy::database() const
{
    return m_database;
}

QList<StaticFontPtr> RelationalFontRepositoryStrategy::fonts()
{
    QList<StaticFontPtr> fonts;
    FontTableReader reader(*m_database);
    if (!reader.isUsable()) {
        const auto rows = m_database->fontGateway()->select({}, {}, Gateway::ForwardOnly);
        fonts = RecordListFontFactory::instance()->createFonts(*rows);
        m_isUnread = rows->hasFailed();
        return fonts;
    }
    m_isUnread = !reader.read(fonts);
    if (!m_isUnread)
        return fonts;
    qWarning() << "E_1_"
               << "Reading the catalogue failed with SQLite's error" << reader.errorCode();
    // Damage inside the file shows here, while it is first read. With the only connection being ours, the file can be
    // replaced under it, and the next rescan brings its fonts back.
    const bool alone = m_database->connectionFactory()->connectionNames().size() == 1;
    if (alone && fontdatabasefile::isDamage(QString::number(reader.errorCode())) && m_database->replaceDamaged()) {
        fonts.clear();
        m_isUnread = false;
    } else {
        m_database->setUnreadable();
    }
    return fonts;
}

StaticFontPtr RelationalFontRepositoryStrategy::font(int id)
{
    const auto row = m_database->fontGateway()->selectOne(id);
    return RecordListFontFactory::instance()->createFonts(*row).value(0);
}

QList<StaticFontPtr> RelationalFontRepositoryStrategy::findMatchingFonts(const MatchingCriteriaPtr& criteria)
{
    const auto command = createFindMathingFontsCommand(criteria, false);
    command->start();
    command->waitForFinished();
    return command->fonts();
}

FindMathingFontsCommandPtr
RelationalFontRepositoryStrategy::createFindMathingFontsCommand(const MatchingCriteriaPtr& criteria, bool idsOnly)
{
    return QSharedPointer<RelationalFindMathingFontsCommand>::create(m_database, criteria, idsOnly);
}

QList<int> RelationalFontRepositoryStrategy::findMatchingFontIds(const MatchingCriteriaPtr& criteria)
{
    const auto command = createFindMathingFontsCommand(criteria, true);
    command->start();
    command->waitForFinished();
    return command->fontIds();
}

bool RelationalFontRepositoryStrategy::addFonts(const QList<StaticFontPtr>& fonts)
{
    return addFonts(fonts, {});
}

bool RelationalFontRepositoryStrategy::addFonts(const QList<StaticFontPtr>& fonts, const Alongside& alongside)
{
    if (m_isUnread) {
        qWarning() << "E_1_"
                   << "Nothing is added to a catalogue that could not be read";
        return false;
    }
    QMutexLocker turn(&m_database->connectionFactory()->writeMutex());
    DatabaseTransaction transaction(m_database->connectionFactory()->database());
    if (!transaction.isActive())
        return false;
    FontRows rows = writtenRows(fonts);
    const QList<QVariant> ids = m_database->fontGateway()->insert(rows);
    bool complete = ids.size() == fonts.size();
    for (int i = 0; i < ids.size(); ++i) {
        if (ids.at(i).isValid())
            fonts.at(i)->setId(ids.at(i).toInt());
        else
            complete = false;
    }
    if ((!alongside || ids.isEmpty() || alongside()) && transaction.commit())
        return complete;
    for (const StaticFontPtr& font : fonts)
        font->setId(fms::StaticFont::NewId);
    return false;
}

bool RelationalFontRepositoryStrategy::addFont(const StaticFontPtr& font)
{
    return addFonts({font});
}

bool RelationalFontRepositoryStrategy::updateFonts(const QList<StaticFontPtr>& fonts)
{
    FontRows rows = writtenRows(fonts);
    return m_database->fontGateway()->update(rows);
}

bool RelationalFontRepositoryStrategy::updateFont(const StaticFontPtr& font)
{
    return updateFonts({font});
}

bool RelationalFontRepositoryStrategy::removeFonts(const QList<StaticFontPtr>& fonts)
{
    QVariantList ids;
    ids.reserve(fonts.size());
    for (const StaticFontPtr& font : fonts)
        ids.append(font->id());
    return m_database->fontGateway()->removeIn(ids);
}

bool RelationalFontRepositoryStrategy::removeFont(const StaticFontPtr& font)
{
    return removeFonts({font});
}

bool RelationalFontRepositoryStrategy::removeAll()
{
    return m_database->fontGateway()->removeAll();
}

int RelationalFontRepositoryStrategy::fontCount()
{
    return qMax(0, m_database->fontGateway()->count());
}

bool RelationalFontRepositoryStrategy::containsFont(int id)
{
    return !findMatchingFontIds(MatchingCriteria::leaf(MatchingCriteria::Equal, QStringLiteral("id"), id)).isEmpty();
}

QHash<QString, QList<int>> RelationalFontRepositoryStrategy::fileFaces()
{
    QHash<QString, QList<int>> faces;
    const auto rows = m_database->fontGateway()->select({Db::file_name, Db::face_index}, {}, Gateway::ForwardOnly);
    for (int row = 0; rows->hasRow(row); ++row) {
        faces[fms::platform::pathKey(rows->value(row, Db::file_name).toString())].append(
            rows->value(row, Db::face_index).toInt());
    }
    return faces;
}

QList<int> RelationalFontRepositoryStrategy::fontIdList()
{
    QList<int> ids;
    const auto rows = m_database->fontGateway()->select({Db::id}, {}, Gateway::ForwardOnly);
    for (int row = 0; rows->hasRow(row); ++row)
        ids.append(rows->value(row, Db::id).toInt());
    return ids;
}

QList<int> RelationalFontRepositoryStrategy::fontIdsForFile(const QString& fileName)
{
    return findMatchingFontIds(MatchingCriteria::leaf(MatchingCriteria::Equal, QStringLiteral("fileName"), fileName));
}

QStringList RelationalFontRepositoryStrategy::foundries()
{
    QSet<QString> names;
    const auto rows = m_database->fontGateway()->select({Db::foundry}, {}, Gateway::ForwardOnly);
    for (int row = 0; rows->hasRow(row); ++row)
        names.insert(rows->value(row, Db::foundry).toString());
    QStringList sorted(names.cbegin(), names.cend());
    sorted.sort();
    return sorted;
}
