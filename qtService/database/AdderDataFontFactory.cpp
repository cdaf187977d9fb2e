#include "qtService/database/AdderDataFontFactory.h"

#include "qtService/database/StaticFontData.h"

namespace {

// The report of one face: missing keys read as empty texts, numbers as 0 where there is none.
class Report
{
public:
    explicit Report(const QHash<QString, QString>& info)
        : m_info(info)
    {
    }

    QString text(const char* key) const { return m_info.value(QLatin1String(key)); }
    fms::SharedText shared(const char* key) const { return fms::SharedText(text(key)); }
    fms::SharedText url(const char* key) const { return fms::SharedText(QUrl(text(key)).toString()); }
    int number(const char* key) const { return text(key).toInt(); }
    bool flag(const char* key) const { return number(key) != 0; }
    uchar byte(const char* key) const { return uchar(number(key)); }
    QDateTime moment(const char* key) const { return fms::fromUnixSeconds(uint(number(key))); }

private:
    const QHash<QString, QString>& m_info;
};

} // namespace

AdderDataFontFactory::AdderDataFontFactory(QObject* parent)
    : QObject(parent)
{
}

StaticFontPtr AdderDataFontFactory::createFont(const QHash<QString, QString>& fontInfo) const
{
    const Report report(fontInfo);
    auto font = StaticFontPtr::create();
    fms::StaticFontData& data = fms::StaticFontAccess::unshared(*font);
    data.fileName = report.text("file_name");
    data.originalFileName = report.text("original_file_name");
    data.familyName = report.shared("face_name");
    data.styleName = report.shared("style");
    data.menuFamilyName = report.shared("menu_family_name");
    data.menuStyleName = report.shared("menu_style_name");
    data.fullName = report.text("full_name");
    data.postScriptName = report.text("ps_name");
    data.sfntPostScriptName = report.text("sfnt_ps_name");
    data.fileHash = report.text("filehash");
    data.isBold = report.flag("bold");
    data.isItalic = report.flag("italic");
    data.isDeleted = report.flag("deleted");
    data.isMonospaced = report.flag("mono");
    data.isSmallCaps = report.flag("smallcaps");
    data.isLigature = report.flag("ligature");
    data.version = report.shared("version");
    data.vendor = report.shared("vendor");
    data.vendorUrl = report.url("vendor_url");
    data.designer = report.shared("designer");
    data.designerUrl = report.url("designer_url");
    data.description = report.shared("description");
    data.trademark = report.shared("trademark");
    data.otherInfo = report.shared("other_info");
    data.format = report.shared("format");
    data.foundry = report.shared("foundry");
    data.license = report.shared("license");
    data.licenseUrl = report.url("license_url");
    data.otherInfo2 = report.shared("other_info2");
    data.latinMetricsCorrection = report.text("latin_metrics_correction");
    data.fullMetricsCorrection = report.text("full_metrics_correction");
    data.onlineSource = report.shared("online_source");
    data.dateAdded.set(report.moment("added"));
    data.dateLastUsed.set(report.moment("used"));
    data.dateDownloaded.set(report.moment("downloaded"));
    data.dateActivated = report.moment("activated");
    data.dateDeactivated = report.moment("deactivated");
    data.dateLastSeen = report.moment("last_seen");
    data.styleField = report.byte("style_field");
    data.serifStyle = report.byte("serif_style");
    data.hwi = report.number("hwi");
    data.hhe = report.number("hhe");
    data.hwe = report.number("hwe");
    data.italicAngle = report.number("italic_angle");
    data.specificWidth = report.number("specific_width");
    data.specificHeight = report.number("specific_height");
    data.smartChoiceAll = report.number("sc_all");
    data.smartChoiceBody = report.number("sc_body");
    data.smartChoiceHead = report.number("sc_head");
    data.faceIndex = report.number("face_index");
    data.onlineId = report.number("online_id");
    data.isPurchased = report.flag("is_purchased");
    data.supportedSubsets.setText(report.text("supported_subsets"));
    data.shareEqualTexts();
    return font;
}
