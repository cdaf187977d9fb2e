#include "qtService/ui/filter/FontFilterCriteria.h"

#include "qtService/ui/filter/FontFiltersState.h"

#include <QRegularExpression>

#include <array>

namespace {

// Fields a search text is looked for in, with the numbers the search menu knows them by.
struct SearchField
{
    int id;
    const char* property;
};

constexpr SearchField searchFields[] = {
    {8, "designer"},   {1, "styleName"}, {0, "familyName"}, {10, "description"},
    {504, "userNote"}, {16, "foundry"},  {13, "license"},
};

// Lower bounds of the buckets 2 to 5.
using Bounds = std::array<int, 4>;
constexpr Bounds weightBounds = {100, 170, 250, 500};
constexpr Bounds widthBounds = {800, 1400, 1800, 2500};
constexpr Bounds sizeBounds = {70, 130, 200, 300};
constexpr Bounds angleBounds = {1, 15, 30, 45}; // whole degrees: the first bucket is "upright"

MatchingCriteriaPtr equals(const char* property, const QVariant& value)
{
    return MatchingCriteria::leaf(MatchingCriteria::Equal, QLatin1String(property), value);
}

MatchingCriteriaPtr contains(const char* property, const QVariant& value)
{
    return MatchingCriteria::leaf(MatchingCriteria::Contains, QLatin1String(property), value, Qt::CaseInsensitive);
}

void appendBucket(const MatchingCriteriaPtr& all, const char* property, int bucket, const Bounds& bounds)
{
    if (bucket < 1 || bucket > int(bounds.size()) + 1)
        return;
    const QString name = QLatin1String(property);
    if (bucket > 1)
        all->append(MatchingCriteria::leaf(MatchingCriteria::GreaterOrEqual, name, bounds[size_t(bucket - 2)]));
    if (bucket <= int(bounds.size()))
        all->append(MatchingCriteria::leaf(MatchingCriteria::Less, name, bounds[size_t(bucket - 1)]));
}

// A pair of check boxes: both on restricts nothing, both off leaves nothing.
void appendPair(const MatchingCriteriaPtr& all, const char* property, bool wantTrue, bool wantFalse)
{
    if (!wantFalse)
        all->append(equals(property, true));
    if (!wantTrue)
        all->append(equals(property, false));
}

void appendSearch(const MatchingCriteriaPtr& all, const FontFiltersState& state)
{
    static const QRegularExpression space(QStringLiteral("\\s"));
    const QStringList words = state.textSearch().split(space, Qt::SkipEmptyParts);
    const QList<int> wanted = state.textSearchFields();
    for (const QString& word : words) {
        const MatchingCriteriaPtr any = MatchingCriteria::anyOf();
        for (const SearchField& field : searchFields) {
            if (wanted.isEmpty() || wanted.contains(field.id))
                any->append(contains(field.property, word));
        }
        all->append(any);
    }
}

template <class List>
MatchingCriteriaPtr anyEqual(const char* property, const List& values)
{
    const MatchingCriteriaPtr any = MatchingCriteria::anyOf();
    for (const auto& value : values)
        any->append(equals(property, value));
    return any;
}

} // namespace

MatchingCriteriaPtr criteriaForFilters(const FontFiltersState& state)
{
    const MatchingCriteriaPtr all = MatchingCriteria::allOf();
    appendSearch(all, state);
    if (!state.formats().isEmpty() && state.formats().size() < 3)
        all->append(anyEqual("format", state.formats()));
    appendPair(all, "isSerif", state.serifs(), state.sanserifs());
    appendPair(all, "isSymbol", state.symbols(), state.nonsymbols());
    appendPair(all, "isMonospacedClass", state.monospaced(), state.nonMonospaced());
    if (!state.foundry().isEmpty())
        all->append(equals("foundry", state.foundry()));
    appendBucket(all, "hwe", state.weight(), weightBounds);
    appendBucket(all, "specificWidth", state.width(), widthBounds);
    appendBucket(all, "opticalSize", state.optsize(), sizeBounds);
    appendBucket(all, "italicAngle", state.angle(), angleBounds);
    if (!state.unicodeSubsets().isEmpty())
        all->append(contains("supportedSubsets", QVariant::fromValue(state.unicodeSubsets())));
    if (!state.userFamily().isEmpty())
        all->append(equals("userDefinedFamilyName", state.userFamily()));
    if (!state.classes().isEmpty()) {
        const MatchingCriteriaPtr any = MatchingCriteria::anyOf();
        for (const QString& keyword : state.classes())
            any->append(contains("otherInfo2", keyword));
        all->append(any);
    }
    if (state.rating() >= 0)
        all->append(equals("userRanking", state.rating()));
    if (state.fontActivity() != FontFiltersState::AnyActivity)
        all->append(equals("activityType", int(state.fontActivity()) - 1));
    return all;
}
