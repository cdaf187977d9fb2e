// The records' fields as texts addressed by number, for listings and for storing single fields.
#include "qtService/database/StaticFontData.h"

namespace fms {

namespace {

// Where a text field of the given number lies; null for those that are no plain texts.
template <class Data>
auto sharedField(Data& data, StaticFont::StringField field) -> decltype(&data.familyName)
{
    switch (field) {
    case StaticFont::FamilyName:
        return &data.familyName;
    case StaticFont::StyleName:
        return &data.styleName;
    case StaticFont::Version:
        return &data.version;
    case StaticFont::Vendor:
        return &data.vendor;
    case StaticFont::VendorUrl:
        return &data.vendorUrl;
    case StaticFont::Designer:
        return &data.designer;
    case StaticFont::DesignerUrl:
        return &data.designerUrl;
    case StaticFont::Description:
        return &data.description;
    case StaticFont::Trademark:
        return &data.trademark;
    case StaticFont::OtherInfo:
        return &data.otherInfo;
    case StaticFont::License:
        return &data.license;
    case StaticFont::LicenseUrl:
        return &data.licenseUrl;
    case StaticFont::Format:
        return &data.format;
    case StaticFont::Foundry:
        return &data.foundry;
    case StaticFont::OtherInfo2:
        return &data.otherInfo2;
    case StaticFont::MenuFamilyName:
        return &data.menuFamilyName;
    case StaticFont::MenuStyleName:
        return &data.menuStyleName;
    case StaticFont::OnlineSource:
        return &data.onlineSource;
    default:
        return nullptr;
    }
}

template <class Data>
auto ownField(Data& data, StaticFont::StringField field) -> decltype(&data.fileName)
{
    switch (field) {
    case StaticFont::PostScriptName:
        return &data.postScriptName;
    case StaticFont::FileName:
        return &data.fileName;
    case StaticFont::OriginalFileName:
        return &data.originalFileName;
    case StaticFont::SpareTextA:
        return &data.spareTextA;
    case StaticFont::FileHash:
        return &data.fileHash;
    case StaticFont::SfntPostScriptName:
        return &data.sfntPostScriptName;
    case StaticFont::LatinMetricsCorrection:
        return &data.latinMetricsCorrection;
    case StaticFont::FullMetricsCorrection:
        return &data.fullMetricsCorrection;
    case StaticFont::SpareTextB:
        return &data.spareTextB;
    case StaticFont::FullName:
        return &data.fullName;
    default:
        return nullptr;
    }
}

template <class Data>
auto secondsField(Data& data, StaticFont::StringField field) -> decltype(&data.dateAdded)
{
    switch (field) {
    case StaticFont::DateAdded:
        return &data.dateAdded;
    case StaticFont::DateLastUsed:
        return &data.dateLastUsed;
    case StaticFont::DateDownloaded:
        return &data.dateDownloaded;
    default:
        return nullptr;
    }
}

template <class Data>
auto momentField(Data& data, StaticFont::StringField field) -> decltype(&data.dateActivated)
{
    switch (field) {
    case StaticFont::DateActivated:
        return &data.dateActivated;
    case StaticFont::DateDeactivated:
        return &data.dateDeactivated;
    case StaticFont::DateLastSeen:
        return &data.dateLastSeen;
    default:
        return nullptr;
    }
}

QString textField(const StaticFontData& data, StaticFont::StringField field)
{
    if (const SharedText* text = sharedField(data, field))
        return text->text();
    if (const QString* text = ownField(data, field))
        return *text;
    if (const SecondsText* seconds = secondsField(data, field))
        return seconds->text();
    if (const QDateTime* moment = momentField(data, field))
        return moment->toString(Qt::TextDate);
    if (field == StaticFont::SupportedSubsets)
        return data.supportedSubsets.text();
    return QString();
}

// Numbered fields from 100; nothing for one that does not exist.
QString numberedField(const StaticFontData& data, int field, bool& isNumeric)
{
    isNumeric = true;
    switch (field) {
    case 100:
        return QString::number(data.id);
    case 101:
        return QString::number(int(data.isBold));
    case 102:
        return QString::number(int(data.isItalic));
    case 103:
        return QString::number(int(data.isDeleted));
    case 104:
    case 105:
    case 106:
    case 107:
    case 108:
        return QString::number(int(data.privateFlags[size_t(field - 104)]));
    case 109:
        return QString::number(data.activityType);
    case 111:
        return QString::number(data.serifStyle);
    case 112:
        return QString::number(data.hwi);
    case 113:
        return QString::number(data.hhe);
    case 114:
        return QString::number(data.hwe);
    case 115:
        return QString::number(data.smartChoiceAll);
    case 116:
        return QString::number(data.smartChoiceBody);
    case 117:
        return QString::number(data.smartChoiceHead);
    case 118:
        return QString::number(data.italicAngle);
    case 119:
        return QString::number(data.specificWidth);
    case 120:
        return QString::number(data.specificHeight);
    case 121:
        return QString::number(data.faceIndex);
    case 129:
        return QString::number(data.onlineId);
    case 130:
        return QString::number(int(data.isPurchased));
    default:
        break;
    }
    isNumeric = false;
    switch (field) {
    case 122:
        return data.familyName.text() + QLatin1Char(' ') + data.styleName.text();
    case 123:
        return data.dateAdded.moment().toString(Qt::TextDate);
    case 124:
        return data.computedFontHash();
    case 125: // a number, but listings do not sort it as one
        return QString::number(data.duplicateCount);
    case 126:
        return data.dateActivated.toString(Qt::TextDate);
    case 127:
        return data.dateDeactivated.toString(Qt::TextDate);
    case 128:
        return data.dateLastSeen.toString(Qt::TextDate);
    default:
        isNumeric = true; // so are the fields that do not exist
        return QString();
    }
}

} // namespace

QString StaticFont::stringField(StringField field) const
{
    QReadLocker locker(&m_lock);
    return textField(*m_data.constData(), field);
}

void StaticFont::setStringField(StringField field, const QString& text)
{
    QWriteLocker locker(&m_lock);
    StaticFontData& data = *m_data;
    if (SharedText* shared = sharedField(data, field))
        *shared = SharedText(text);
    else if (QString* own = ownField(data, field))
        *own = text;
    else if (SecondsText* seconds = secondsField(data, field))
        seconds->set(text);
    else if (QDateTime* moment = momentField(data, field))
        *moment = QDateTime::fromString(text, Qt::TextDate);
    else if (field == SupportedSubsets)
        data.supportedSubsets.setText(text);
}

QString StaticFont::fieldText(int field, bool* isNumeric) const
{
    bool numeric = false;
    QString text;
    {
        QReadLocker locker(&m_lock);
        text = field < 36 ? textField(*m_data.constData(), StringField(field))
                          : numberedField(*m_data.constData(), field, numeric);
    }
    if (isNumeric)
        *isNumeric = numeric;
    return text;
}

} // namespace fms
