#include "rest/FontJson.h"

#include "qtService/app/service/FontManagementService.h"
#include "qtService/database/StaticFont.h"
#include "qtService/management/FontGroup.h"
#include "qtService/management/SystemFontGroupList.h"
#include "rest/http/QHttpRequest.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace api::rest {

namespace {

using fms::StaticFont;

constexpr int longText = 128;
constexpr int rememberedTexts = 2000;

// One property of the exported list, read through its getter: properties by name cost many times as much.
struct Member
{
    const char* name;
    void (*write)(FontJson&, JsonWriter&, const StaticFont&);
};

template <QString (StaticFont::*getter)() const>
void textMember(FontJson& fonts, JsonWriter& json, const StaticFont& font)
{
    fonts.writeText(json, (font.*getter)());
}

template <StaticFont::StringField field>
void urlMember(FontJson& fonts, JsonWriter& json, const StaticFont& font)
{
    fonts.writeUrl(json, font.stringField(field));
}

template <int (StaticFont::*getter)() const>
void numberMember(FontJson&, JsonWriter& json, const StaticFont& font)
{
    json.value((font.*getter)());
}

template <bool (StaticFont::*getter)() const>
void truthMember(FontJson&, JsonWriter& json, const StaticFont& font)
{
    json.value((font.*getter)());
}

void dateAddedMember(FontJson&, JsonWriter& json, const StaticFont& font)
{
    const QString text = QVariant(font.dateAdded()).toString();
    if (text.isEmpty())
        json.null();
    else
        json.value(text);
}

void subsetsMember(FontJson&, JsonWriter& json, const StaticFont& font)
{
    const QSet<int> subsets = font.supportedSubsets();
    std::vector<int> sorted(subsets.cbegin(), subsets.cend());
    std::sort(sorted.begin(), sorted.end());
    json.beginArray();
    for (const int subset : sorted)
        json.value(subset);
    json.endArray();
}

const Member knownMembers[] = {
    {"familyName", textMember<&StaticFont::familyName>},
    {"styleName", textMember<&StaticFont::styleName>},
    {"postScriptName", textMember<&StaticFont::postScriptName>},
    {"fileName", textMember<&StaticFont::fileName>},
    {"version", textMember<&StaticFont::version>},
    {"vendor", textMember<&StaticFont::vendor>},
    {"vendorUrl", urlMember<StaticFont::VendorUrl>},
    {"designer", textMember<&StaticFont::designer>},
    {"designerUrl", urlMember<StaticFont::DesignerUrl>},
    {"description", textMember<&StaticFont::description>},
    {"trademark", textMember<&StaticFont::trademark>},
    {"license", textMember<&StaticFont::license>},
    {"licenseUrl", urlMember<StaticFont::LicenseUrl>},
    {"format", textMember<&StaticFont::format>},
    {"foundry", textMember<&StaticFont::foundry>},
    {"dateAdded", dateAddedMember},
    {"userNote", textMember<&StaticFont::userNote>},
    {"otherInfo2", textMember<&StaticFont::otherInfo2>},
    {"id", numberMember<&StaticFont::id>},
    {"isBold", truthMember<&StaticFont::isBold>},
    {"isItalic", truthMember<&StaticFont::isItalic>},
    {"activityType", numberMember<&StaticFont::activityType>},
    {"italicAngle", numberMember<&StaticFont::italicAngle>},
    {"isHidden", truthMember<&StaticFont::isHidden>},
    {"supportedSubsets", subsetsMember},
};

// The exported list decides what is written and in which order; names that no property has are left out.
std::vector<Member> exportedMembers()
{
    std::vector<Member> members;
    for (const QString& name : StaticFont::exportedProperties()) {
        const auto known = std::find_if(std::begin(knownMembers), std::end(knownMembers),
                                        [&name](const Member& m) { return name == QLatin1String(m.name); });
        if (known != std::end(knownMembers))
            members.push_back(*known);
    }
    return members;
}

} // namespace

QUrl requestOrigin(const QHttpRequest& request)
{
    const QString header = request.header(QStringLiteral("host"));
    // An address of IPv6 stands in brackets and has colons of its own.
    const int portMark = header.indexOf(QLatin1Char(':'), qMax(0, header.indexOf(QLatin1Char(']'))));
    const int port = portMark < 0 ? 0 : header.midRef(portMark + 1).toInt();
    QUrl url;
    url.setScheme(QStringLiteral("http"));
    url.setHost(header.left(portMark));
    url.setPort(port > 0 && port <= 65535 ? port : 80);
    return url;
}

FontJson::FontJson(const FontManagementService& service, const QUrl& origin)
{
    if (const auto groups = service.systemFontGroups()) {
        m_systemFonts = groups->group(SystemFontGroupList::SystemFonts);
        m_duplicateFonts = groups->group(SystemFontGroupList::DuplicateFonts);
    }
    QUrl url = origin;
    url.setPath(QStringLiteral("/characters/"));
    m_charactersUrl = url.toString(QUrl::FullyEncoded);
}

void FontJson::write(JsonWriter& json, const StaticFont& font, std::optional<int> position)
{
    static const std::vector<Member> members = exportedMembers();
    json.beginObject();
    for (const Member& member : members) {
        json.key(QLatin1String(member.name));
        member.write(*this, json, font);
    }
    const int id = font.id();
    json.member(QLatin1String("isSystemFont"), m_systemFonts && m_systemFonts->containsFont(id));
    json.member(QLatin1String("isDuplicateFont"), m_duplicateFonts && m_duplicateFonts->containsFont(id));
    json.member(QLatin1String("characters"), QString(m_charactersUrl + QString::number(id)));
    if (position)
        json.member(QLatin1String("#"), *position);
    json.endObject();
}

void FontJson::writeText(JsonWriter& json, const QString& text)
{
    if (text.size() < longText) {
        json.value(text);
        return;
    }
    auto known = m_longTexts.find(text.constData());
    if (known == m_longTexts.end()) {
        if (m_longTexts.size() >= rememberedTexts)
            m_longTexts.clear();
        QByteArray encoded;
        JsonWriter(encoded).value(text);
        known = m_longTexts.insert(text.constData(), {text, encoded});
    }
    json.encoded(known->second);
}

void FontJson::writeUrl(JsonWriter& json, const QString& text)
{
    if (text.isEmpty()) {
        json.null();
        return;
    }
    auto known = m_urls.find(text);
    if (known == m_urls.end()) {
        if (m_urls.size() >= rememberedTexts)
            m_urls.clear();
        known = m_urls.insert(text, QUrl(text).toString(QUrl::FullyEncoded));
    }
    if (known->isEmpty())
        json.null();
    else
        json.value(*known);
}

} // namespace api::rest
