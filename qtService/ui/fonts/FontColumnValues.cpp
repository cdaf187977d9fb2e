#include "qtService/ui/fonts/FontColumnValues.h"

#include "qtService/ui/fonts/FontColumn.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QLocale>

namespace fonts {

namespace {

const char* const titles[ColumnCount] = {
    QT_TRANSLATE_NOOP("KrvFontsViewModel", "#"),
    "",
    QT_TRANSLATE_NOOP("KrvFontsViewModel", "Preview"),
    QT_TRANSLATE_NOOP("KrvFontsViewModel", "Font Name"),
    QT_TRANSLATE_NOOP("KrvFontsViewModel", "Style"),
    QT_TRANSLATE_NOOP("KrvFontsViewModel", "PostScript Name"),
    QT_TRANSLATE_NOOP("KrvFontsViewModel", "Filename"),
    QT_TRANSLATE_NOOP("KrvFontsViewModel", "Version"),
    QT_TRANSLATE_NOOP("KrvFontsViewModel", "Vendor"),
    QT_TRANSLATE_NOOP("KrvFontsViewModel", "Vendor URL"),
    QT_TRANSLATE_NOOP("KrvFontsViewModel", "Designer"),
    QT_TRANSLATE_NOOP("KrvFontsViewModel", "Designer URL"),
    QT_TRANSLATE_NOOP("KrvFontsViewModel", "Description"),
    QT_TRANSLATE_NOOP("KrvFontsViewModel", "Trademark"),
    QT_TRANSLATE_NOOP("KrvFontsViewModel", "License"),
    QT_TRANSLATE_NOOP("KrvFontsViewModel", "License URL"),
    QT_TRANSLATE_NOOP("KrvFontsViewModel", "Format"),
    QT_TRANSLATE_NOOP("KrvFontsViewModel", "Foundry"),
    QT_TRANSLATE_NOOP("KrvFontsViewModel", "Date Added"),
    QT_TRANSLATE_NOOP("KrvFontsViewModel", "Note"),
    QT_TRANSLATE_NOOP("KrvFontsViewModel", "Online Source"),
    QT_TRANSLATE_NOOP("KrvFontsViewModel", "Other info2"),
    QT_TRANSLATE_NOOP("KrvFontsViewModel", "Id"),
    QT_TRANSLATE_NOOP("KrvFontsViewModel", "Active"),
    QT_TRANSLATE_NOOP("KrvFontsViewModel", "Bold"),
    QT_TRANSLATE_NOOP("KrvFontsViewModel", "Italic"),
    QT_TRANSLATE_NOOP("KrvFontsViewModel", "Italic angle"),
    QT_TRANSLATE_NOOP("KrvFontsViewModel", "Hidden"),
};

QString translated(const char* text)
{
    return QCoreApplication::translate("KrvFontsViewModel", text);
}

} // namespace

QString columnTitle(int column)
{
    if (column < 0 || column >= ColumnCount || !*titles[column])
        return QString();
    return translated(titles[column]);
}

QVariant columnValue(const StaticFontPtr& font, int column)
{
    switch (column) {
    case FamilyNameColumn:
        return font->familyName();
    case StyleNameColumn:
        return font->styleName();
    case PostScriptNameColumn:
        return font->postScriptName();
    case FileNameColumn:
        return font->fileName();
    case VersionColumn:
        return font->version();
    case VendorColumn:
        return font->vendor();
    case VendorUrlColumn:
        return font->vendorUrl().toString();
    case DesignerColumn:
        return font->designer();
    case DesignerUrlColumn:
        return font->designerUrl().toString();
    case DescriptionColumn:
        return font->description();
    case TrademarkColumn:
        return font->trademark();
    case LicenseColumn:
        return font->license();
    case LicenseUrlColumn:
        return font->licenseUrl().toString();
    case FormatColumn:
        return font->format();
    case FoundryColumn:
        return font->foundry();
    case DateAddedColumn:
        return QLocale().toString(font->dateAdded(), QLocale::ShortFormat);
    case NoteColumn:
        return font->userNote();
    case OnlineSourceColumn:
        return onlineSourceText(font->onlineSource());
    case ClassificationColumn:
        return font->otherInfo2();
    case IdColumn:
        return font->id();
    case ActivityColumn:
        return activityText(font->activityType());
    case BoldColumn:
        return font->isBold();
    case ItalicColumn:
        return font->isItalic();
    case ItalicAngleColumn:
        return font->italicAngle();
    case HiddenColumn:
        return font->isHidden();
    default:
        return QVariant();
    }
}

QString activityText(int activityType)
{
    switch (activityType) {
    case 0:
        return translated(QT_TRANSLATE_NOOP("KrvFontsViewModel", "Inactive"));
    case 1:
        return translated(QT_TRANSLATE_NOOP("KrvFontsViewModel", "Temporarily active"));
    case 2:
        return translated(QT_TRANSLATE_NOOP("KrvFontsViewModel", "Permanently active"));
    default:
        return QString();
    }
}

QString onlineSourceText(const QString& onlineSource)
{
    if (onlineSource.isEmpty())
        return QString();
    if (onlineSource == QLatin1String("filterbits_googlefonts"))
        return translated(QT_TRANSLATE_NOOP("KrvFontsViewModel", "Google web fonts"));
    return translated(QT_TRANSLATE_NOOP("KrvFontsViewModel", "My web fonts"));
}

QString defaultSampleText(const StaticFontPtr& font, bool withStyle)
{
    if (withStyle)
        return translated(QT_TRANSLATE_NOOP("KrvFontsViewModel", "This is a sample of body text that uses %1 %2"))
            .arg(font->familyName(), font->styleName());
    return translated(QT_TRANSLATE_NOOP("KrvFontsViewModel", "This is a sample of body text that uses %1"))
        .arg(font->familyName());
}

} // namespace fonts
