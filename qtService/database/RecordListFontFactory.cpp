#include "qtService/database/RecordListFontFactory.h"

#include "qtService/database/StaticFontData.h"

namespace {

using Db = FontDatabase;

// The values of one row, as the transformation gives them.
class Row
{
public:
    Row(RecordListFontFactory::Rows& rows, int row)
        : m_rows(rows)
        , m_row(row)
    {
    }

    QVariant value(Db::FontTableColumn column) const { return m_rows.value(m_row, column); }
    QString text(Db::FontTableColumn column) const { return value(column).toString(); }
    fms::SharedText shared(Db::FontTableColumn column) const { return fms::SharedText(text(column)); }
    fms::SharedText url(Db::FontTableColumn column) const { return fms::SharedText(QUrl(text(column)).toString()); }
    int number(Db::FontTableColumn column) const { return value(column).toInt(); }
    bool flag(Db::FontTableColumn column) const { return value(column).toBool(); }
    QDateTime moment(Db::FontTableColumn column) const { return value(column).toDateTime(); }

private:
    RecordListFontFactory::Rows& m_rows;
    const int m_row;
};

} // namespace

RecordListFontFactory::RecordListFontFactory(QObject* parent)
    : QObject(parent)
{
}

QList<StaticFontPtr> RecordListFontFactory::createFonts(Rows& rows) const
{
    QList<StaticFontPtr> fonts;
    for (int row = 0; rows.hasRow(row); ++row)
        fonts.append(createFont(rows, row));
    return fonts;
}

StaticFontPtr RecordListFontFactory::createFont(Rows& rows, int row) const
{
    const Row values(rows, row);
    auto font = StaticFontPtr::create();
    fms::StaticFontData& data = fms::StaticFontAccess::unshared(*font);
    data.id = values.number(Db::id);
    data.fileExists = true;
    data.familyName = values.shared(Db::face_name);
    data.fileName = values.text(Db::file_name);
    data.originalFileName = values.text(Db::original_file_name);
    data.styleName = values.shared(Db::style);
    data.postScriptName = values.text(Db::ps_name);
    data.sfntPostScriptName = values.text(Db::sfnt_ps_name);
    data.menuFamilyName = values.shared(Db::menu_family_name);
    data.menuStyleName = values.shared(Db::menu_style_name);
    data.fullName = values.text(Db::full_name);
    data.isBold = values.flag(Db::bold);
    data.isItalic = values.flag(Db::italic);
    data.isDeleted = values.flag(Db::deleted);
    data.styleField = uchar(values.number(Db::style_field));
    data.serifStyle = uchar(values.number(Db::serif_style));
    data.otherInfo2 = values.shared(Db::other_info2);
    data.hwi = values.number(Db::hwi);
    data.hhe = values.number(Db::hhe);
    data.hwe = values.number(Db::hwe);
    data.smartChoiceAll = values.number(Db::sc_all);
    data.smartChoiceBody = values.number(Db::sc_body);
    data.smartChoiceHead = values.number(Db::sc_head);
    data.otherInfo = values.shared(Db::other_info);
    data.supportedSubsets.set(values.value(Db::supported_subsets).value<QSet<int>>());
    data.italicAngle = values.number(Db::italic_angle);
    data.specificWidth = values.number(Db::specific_width);
    data.specificHeight = values.number(Db::specific_height);
    data.version = values.shared(Db::version);
    data.vendor = values.shared(Db::vendor);
    data.vendorUrl = values.url(Db::vendor_url);
    data.designer = values.shared(Db::designer);
    data.designerUrl = values.url(Db::designer_url);
    data.description = values.shared(Db::description);
    data.trademark = values.shared(Db::trademark);
    data.format = values.shared(Db::format);
    data.foundry = values.shared(Db::foundry);
    data.dateAdded.set(values.moment(Db::added));
    data.dateLastUsed.set(values.moment(Db::used));
    data.dateLastSeen = values.moment(Db::last_seen);
    data.dateActivated = values.moment(Db::activated);
    data.dateDeactivated = values.moment(Db::deactivated);
    data.dateDownloaded.set(values.moment(Db::downloaded));
    data.license = values.shared(Db::license);
    data.licenseUrl = values.url(Db::license_url);
    data.fileHash = values.text(Db::filehash);
    data.latinMetricsCorrection = values.text(Db::latin_metrics_correction);
    data.fullMetricsCorrection = values.text(Db::full_metrics_correction);
    data.faceIndex = values.number(Db::face_index);
    data.onlineSource = values.shared(Db::online_source);
    data.onlineId = values.number(Db::online_id);
    data.isPurchased = values.flag(Db::is_purchased);
    data.activityType = -1;
    data.shareEqualTexts();
    return font;
}
