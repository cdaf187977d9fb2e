#include "rest/FontSelection.h"

#include "qtService/app/service/FontManagementService.h"
#include "qtService/database/FindMathingFontsCommand.h"
#include "qtService/database/KrvFontRepository.h"
#include "qtService/management/SimilarFontsGroup.h"
#include "qtService/management/SystemFontGroupList.h"
#include "qtService/management/UserFontGroupList.h"
#include "rest/FontQuery.h"

#include <QMetaProperty>

#include <algorithm>
#include <limits>
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

// What a value is ordered by: numbers and moments as numbers, everything else as text, whose case decides only between
// texts that are alike but for it.
struct SortKey
{
    double number = 0;
    QString text;
    int index = 0;

    SortKey(const QVariant& value, int position)
        : index(position)
    {
        switch (int(value.type())) {
        case QMetaType::Bool:
        case QMetaType::Int:
        case QMetaType::UChar:
            number = value.toInt();
            break;
        case QMetaType::QDateTime: {
            const QDateTime moment = value.toDateTime();
            number = moment.isValid() ? double(moment.toMSecsSinceEpoch()) : std::numeric_limits<double>::lowest();
            break;
        }
        default:
            text = value.toString();
        }
    }

    bool operator<(const SortKey& other) const
    {
        if (number != other.number)
            return number < other.number;
        const int order = text.compare(other.text, Qt::CaseInsensitive);
        return order != 0 ? order < 0 : text < other.text;
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

void FontSelection::sortByProperty(QList<StaticFontPtr>& fonts, const QString& property, bool descending)
{
    const QMetaObject& type = fms::StaticFont::staticMetaObject;
    const int index = type.indexOfProperty(property.toLatin1().constData());
    if (index < type.propertyOffset())
        return;
    const QMetaProperty read = type.property(index);
    std::vector<SortKey> keys;
    keys.reserve(size_t(fonts.size()));
    for (int i = 0; i < fonts.size(); ++i)
        keys.emplace_back(read.read(fonts.at(i).data()), i);
    if (descending)
        std::stable_sort(keys.begin(), keys.end(), [](const SortKey& a, const SortKey& b) { return b < a; });
    else
        std::stable_sort(keys.begin(), keys.end());
    QList<StaticFontPtr> sorted;
    sorted.reserve(fonts.size());
    for (const SortKey& key : keys)
        sorted.append(fonts.at(key.index));
    fonts = sorted;
}

} // namespace api::rest
