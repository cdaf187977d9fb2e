#include "rest/FontSelection.h"

#include "qtService/app/service/FontManagementService.h"
#include "qtService/database/FindMathingFontsCommand.h"
#include "qtService/database/FontField.h"
#include "qtService/database/KrvFontRepository.h"
#include "qtService/management/SimilarFontsGroup.h"
#include "qtService/management/SystemFontGroupList.h"
#include "qtService/management/UserFontGroupList.h"
#include "rest/FontQuery.h"

#include <algorithm>
#include <vector>

namespace api::rest {

namespace {

constexpr int defaultLimit = 100;

SimilarFontsGroup::SimilarityMethod similarityMethod(const QString& name)
{
    static const QHash<QString, SimilarFontsGroup::SimilarityMethod> methods{
        {QStringLiteral("similarity"), SimilarFontsGroup::Similar},
        {QStringLiteral("harmony_family"), SimilarFontsGroup::HarmonySameFamily},
        {QStringLiteral("harmony_contrast"), SimilarFontsGroup::HarmonyContrast},
        {QStringLiteral("harmony_body"), SimilarFontsGroup::HarmonyBody},
        {QStringLiteral("harmony_headline"), SimilarFontsGroup::HarmonyHeadline},
        {QStringLiteral("smart_choice_mix"), SimilarFontsGroup::SmartChoiceAll},
        {QStringLiteral("smart_choice_body"), SimilarFontsGroup::SmartChoiceBody},
        {QStringLiteral("smart_choice_headline"), SimilarFontsGroup::SmartChoiceHeadline},
    };
    return methods.value(name, SimilarFontsGroup::SimilarityMethod(0));
}

QList<int> candidates(const QString& ids)
{
    QList<int> list;
    if (ids.isEmpty())
        return list;
    const QStringList parts = ids.split(QLatin1Char(','));
    for (const QString& part : parts)
        list.append(part.toInt());
    return list;
}

int limitOf(const QHash<QString, QString>& parameters)
{
    const auto limit = parameters.constFind(QStringLiteral("limit"));
    return limit == parameters.constEnd() ? defaultLimit : limit->toInt();
}

bool isRecentGroup(int groupId)
{
    return groupId == SystemFontGroupList::RecentlyAddedFonts ||
           groupId == SystemFontGroupList::RecentlyActivatedFonts ||
           groupId == SystemFontGroupList::RecentlyDeactivatedFonts;
}

// Numbers and moments are ordered as numbers, everything else as text, whose case decides only between texts that are
// alike but for it. Equal ones stay in the order they have.
struct SortKey
{
    qint64 number = 0;
    QString text;
    int index = 0;

    SortKey(const fms::FontField& field, const fms::StaticFont& font, int position)
        : index(position)
    {
        fms::StaticFontAccess::read(font, [&](const fms::StaticFontData& data) {
            if (field.isNumber())
                number = field.number(data);
            else if (field.kind == fms::FontField::Time)
                number = field.seconds(data);
            else
                text = field.text(data);
        });
    }

    int compare(const SortKey& other) const
    {
        if (number != other.number)
            return number < other.number ? -1 : 1;
        const int order = text.compare(other.text, Qt::CaseInsensitive);
        return order != 0 ? order : text.compare(other.text);
    }
};

} // namespace

FontSelection::FontSelection(FontManagementService& service, const QHash<QString, QString>& parameters,
                             Similarity similarity)
    : m_criteria(criteriaFromQuery(parameters))
{
    bool isGroup = false;
    m_collection = groupOrCatalogue(service, parameters, &isGroup);
    if (isGroup || similarity == Similarity::Ignored)
        return;
    const auto method = similarityMethod(parameters.value(QStringLiteral("sort_method")));
    const int baseFont = parameters.value(QStringLiteral("base_font")).toInt();
    if (method == 0 || baseFont <= 0)
        return;
    const int limit = limitOf(parameters);
    m_similar = service.similarFontsGroup(baseFont, limit == 0 ? 10000 : limit,
                                          candidates(parameters.value(QStringLiteral("id"))), method);
    if (m_similar)
        m_search = m_similar->createFindMathingFontsCommand(MatchingCriteria::allOf(), true);
}

QSharedPointer<FontCollectionInterface> FontSelection::groupOrCatalogue(FontManagementService& service,
                                                                        const QHash<QString, QString>& parameters,
                                                                        bool* isGroup) const
{
    const int groupId = parameters.value(QStringLiteral("group")).toInt();
    const auto systemGroups = service.systemFontGroups();
    const auto userGroups = service.userFontGroups();
    *isGroup = true;
    if (systemGroups && systemGroups->containsGroup(groupId)) {
        const int limit = limitOf(parameters);
        if (isRecentGroup(groupId) && limit != defaultLimit && limit != -1) {
            const auto limited = service.createRecentLimitedFontGroup(SystemFontGroupList::GroupId(groupId), limit);
            if (limited)
                return limited;
        }
        return systemGroups->group(groupId);
    }
    if (userGroups && userGroups->containsGroup(groupId))
        return userGroups->group(groupId);
    *isGroup = false;
    return service.repository();
}

QList<StaticFontPtr> FontSelection::fonts() const
{
    if (!m_similar)
        return m_collection ? m_collection->findMatchingFonts(m_criteria) : QList<StaticFontPtr>();

    // Empty when the search failed; else it has filled the group.
    const QList<int> ranked = m_search->fontIds();
    QHash<int, int> rank;
    for (int i = 0; i < ranked.size(); ++i)
        rank.insert(ranked.at(i), i);
    if (ranked.isEmpty())
        return {};
    QList<StaticFontPtr> found = m_similar->findMatchingFonts(m_criteria);
    std::stable_sort(found.begin(), found.end(), [&rank](const StaticFontPtr& a, const StaticFontPtr& b) {
        return rank.value(a->id()) < rank.value(b->id());
    });
    return found;
}

QList<int> FontSelection::fontIds() const
{
    if (!m_similar)
        return m_collection ? m_collection->findMatchingFontIds(m_criteria) : QList<int>();
    QList<int> ids;
    const auto found = fonts();
    for (const StaticFontPtr& font : found)
        ids.append(font->id());
    return ids;
}

QList<StaticFontPtr> FontSelection::sortedSlice(const QList<StaticFontPtr>& fonts, const QString& property,
                                                bool descending, int first, int last)
{
    const fms::FontField* const field = fms::FontField::find(property);
    if (!field || field->kind == fms::FontField::Subsets || first >= last)
        return fonts.mid(first, std::max(last - first, 0));
    std::vector<SortKey> keys;
    keys.reserve(size_t(fonts.size()));
    for (int i = 0; i < fonts.size(); ++i) {
        if (property == QLatin1String("fontHash"))
            fonts.at(i)->fontHash(); // computes and keeps it
        keys.emplace_back(*field, *fonts.at(i), i);
    }
    const auto comesFirst = [descending](const SortKey& a, const SortKey& b) {
        const int order = descending ? b.compare(a) : a.compare(b);
        return order != 0 ? order < 0 : a.index < b.index;
    };
    // A page of a large catalogue: what comes before and behind it need not be in order.
    const auto begin = keys.begin() + first;
    const auto end = keys.begin() + last;
    if (begin != keys.begin())
        std::nth_element(keys.begin(), begin, keys.end(), comesFirst);
    if (end != keys.end())
        std::nth_element(begin, end, keys.end(), comesFirst);
    std::sort(begin, end, comesFirst);
    QList<StaticFontPtr> slice;
    slice.reserve(last - first);
    for (auto key = begin; key != end; ++key)
        slice.append(fonts.at(key->index));
    return slice;
}

} // namespace api::rest
