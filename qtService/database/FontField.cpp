#include "qtService/database/FontField.h"

#include <QHash>

namespace fms {

namespace {

template <auto Member>
FontField numberField(const char* name, FontField::Kind kind)
{
    FontField field{name, kind};
    field.number = [](const StaticFontData& data) { return int(data.*Member); };
    return field;
}

template <auto Member>
FontField textField(const char* name)
{
    FontField field{name, FontField::Text};
    field.text = [](const StaticFontData& data) -> const QString& { return data.*Member; };
    return field;
}

template <auto Member>
FontField sharedField(const char* name, FontField::Kind kind)
{
    FontField field{name, kind};
    field.text = [](const StaticFontData& data) -> const QString& { return (data.*Member).text(); };
    field.shared = [](const StaticFontData& data) -> const SharedText& { return data.*Member; };
    return field;
}

template <auto Member>
FontField secondsField(const char* name)
{
    FontField field{name, FontField::Time};
    field.moment = [](const StaticFontData& data) { return (data.*Member).moment(); };
    field.seconds = [](const StaticFontData& data) { return (data.*Member).seconds(); };
    field.isSecondsText = true;
    return field;
}

template <auto Member>
FontField momentField(const char* name)
{
    FontField field{name, FontField::Time};
    field.moment = [](const StaticFontData& data) { return data.*Member; };
    field.seconds = [](const StaticFontData& data) -> qint64 {
        return (data.*Member).isValid() ? (data.*Member).toSecsSinceEpoch() : 0;
    };
    return field;
}

template <StaticFont::Classification Class>
FontField classField(const char* name)
{
    FontField field{name, FontField::Flag};
    field.number = [](const StaticFontData& data) { return int(data.hasClass(Class)); };
    return field;
}

FontField opticalSizeField()
{
    FontField field{"opticalSize", FontField::Number};
    field.number = [](const StaticFontData& data) { return data.opticalSize(); };
    return field;
}

FontField subsetsField(const char* name)
{
    return FontField{name, FontField::Subsets};
}

const FontField* allFields(size_t& count)
{
    static const FontField fields[] = {
        numberField<&StaticFontData::id>("id", FontField::Number),
        textField<&StaticFontData::fileName>("fileName"),
        textField<&StaticFontData::originalFileName>("originalFileName"),
        numberField<&StaticFontData::activityType>("activityType", FontField::Number),
        sharedField<&StaticFontData::familyName>("familyName", FontField::SharedTextKind),
        sharedField<&StaticFontData::styleName>("styleName", FontField::SharedTextKind),
        sharedField<&StaticFontData::menuFamilyName>("menuFamilyName", FontField::SharedTextKind),
        sharedField<&StaticFontData::menuStyleName>("menuStyleName", FontField::SharedTextKind),
        textField<&StaticFontData::fullName>("fullName"),
        textField<&StaticFontData::postScriptName>("postScriptName"),
        textField<&StaticFontData::sfntPostScriptName>("sfntPostScriptName"),
        numberField<&StaticFontData::isBold>("isBold", FontField::Flag),
        numberField<&StaticFontData::isItalic>("isItalic", FontField::Flag),
        numberField<&StaticFontData::isDeleted>("isDeleted", FontField::Flag),
        numberField<&StaticFontData::isMonospaced>("isMonospaced", FontField::Flag),
        numberField<&StaticFontData::isSmallCaps>("isSmallCaps", FontField::Flag),
        numberField<&StaticFontData::isLigature>("isLigature", FontField::Flag),
        numberField<&StaticFontData::serifStyle>("serifStyle", FontField::Byte),
        sharedField<&StaticFontData::version>("version", FontField::SharedTextKind),
        sharedField<&StaticFontData::vendor>("vendor", FontField::SharedTextKind),
        sharedField<&StaticFontData::vendorUrl>("vendorUrl", FontField::Address),
        sharedField<&StaticFontData::designer>("designer", FontField::SharedTextKind),
        sharedField<&StaticFontData::designerUrl>("designerUrl", FontField::Address),
        sharedField<&StaticFontData::description>("description", FontField::SharedTextKind),
        sharedField<&StaticFontData::trademark>("trademark", FontField::SharedTextKind),
        sharedField<&StaticFontData::otherInfo>("otherInfo", FontField::SharedTextKind),
        sharedField<&StaticFontData::format>("format", FontField::SharedTextKind),
        sharedField<&StaticFontData::foundry>("foundry", FontField::SharedTextKind),
        secondsField<&StaticFontData::dateAdded>("dateAdded"),
        secondsField<&StaticFontData::dateLastUsed>("dateLastUsed"),
        secondsField<&StaticFontData::dateDownloaded>("dateDownloaded"),
        sharedField<&StaticFontData::license>("license", FontField::SharedTextKind),
        sharedField<&StaticFontData::licenseUrl>("licenseUrl", FontField::Address),
        sharedField<&StaticFontData::otherInfo2>("otherInfo2", FontField::SharedTextKind),
        numberField<&StaticFontData::styleField>("styleField", FontField::Byte),
        numberField<&StaticFontData::hwi>("hwi", FontField::Number),
        numberField<&StaticFontData::hhe>("hhe", FontField::Number),
        numberField<&StaticFontData::hwe>("hwe", FontField::Number),
        subsetsField("supportedSubsets"),
        numberField<&StaticFontData::italicAngle>("italicAngle", FontField::Number),
        numberField<&StaticFontData::specificWidth>("specificWidth", FontField::Number),
        numberField<&StaticFontData::specificHeight>("specificHeight", FontField::Number),
        textField<&StaticFontData::fileHash>("fileHash"),
        textField<&StaticFontData::fontHash>("fontHash"),
        textField<&StaticFontData::latinMetricsCorrection>("latinMetricsCorrection"),
        textField<&StaticFontData::fullMetricsCorrection>("fullMetricsCorrection"),
        numberField<&StaticFontData::smartChoiceAll>("smartChoiceAll", FontField::Number),
        numberField<&StaticFontData::smartChoiceBody>("smartChoiceBody", FontField::Number),
        numberField<&StaticFontData::smartChoiceHead>("smartChoiceHead", FontField::Number),
        numberField<&StaticFontData::faceIndex>("faceIndex", FontField::Number),
        momentField<&StaticFontData::dateActivated>("dateActivated"),
        momentField<&StaticFontData::dateDeactivated>("dateDeactivated"),
        momentField<&StaticFontData::dateLastSeen>("dateLastSeen"),
        numberField<&StaticFontData::onlineId>("onlineId", FontField::Number),
        sharedField<&StaticFontData::onlineSource>("onlineSource", FontField::SharedTextKind),
        numberField<&StaticFontData::isPurchased>("isPurchased", FontField::Flag),
        numberField<&StaticFontData::duplicateCount>("duplicateCount", FontField::Number),
        sharedField<&StaticFontData::userNote>("userNote", FontField::SharedTextKind),
        numberField<&StaticFontData::isHidden>("isHidden", FontField::Flag),
        classField<StaticFont::Serif>("isSerif"),
        classField<StaticFont::Symbol>("isSymbol"),
        classField<StaticFont::Monospace>("isMonospacedClass"),
        opticalSizeField(),
        numberField<&StaticFontData::fileExists>("fileExists", FontField::Flag),
        numberField<&StaticFontData::userRanking>("userRanking", FontField::Number),
        sharedField<&StaticFontData::userDefinedFamilyName>("userDefinedFamilyName", FontField::SharedTextKind),
    };
    count = std::size(fields);
    return fields;
}

} // namespace

QVariant FontField::value(const StaticFontData& data) const
{
    switch (kind) {
    case Number:
        return number(data);
    case Flag:
        return number(data) != 0;
    case Byte:
        return QVariant::fromValue(uchar(number(data)));
    case Text:
    case SharedTextKind:
        return text(data);
    case Address:
        return QUrl(text(data));
    case Time:
        return moment(data);
    case Subsets:
        return QVariant::fromValue(data.supportedSubsets.numbers());
    }
    return QVariant();
}

const FontField* FontField::find(const QString& name)
{
    static const QHash<QString, const FontField*> byName = [] {
        QHash<QString, const FontField*> table;
        size_t count = 0;
        const FontField* const fields = allFields(count);
        for (size_t i = 0; i < count; ++i)
            table.insert(QLatin1String(fields[i].name), &fields[i]);
        return table;
    }();
    return byName.value(name);
}

} // namespace fms
