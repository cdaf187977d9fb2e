#include "rest/FontQuery.h"

#include "rest/ResourceHandler.h"

#include <QRegularExpression>
#include <QSet>
#include <QStringList>

#include <iterator>

namespace api::rest {

namespace {

QString text(const char* name)
{
    return QString::fromLatin1(name);
}

QStringList parts(const QString& commaSeparated)
{
    return commaSeparated.split(QLatin1Char(','), Qt::SkipEmptyParts);
}

QVariantList numbers(const QString& commaSeparated)
{
    QVariantList list;
    const auto items = parts(commaSeparated);
    for (const QString& item : items)
        list.append(item.toInt());
    return list;
}

// What a band asks of its property; an operator of 0 is no condition.
struct Band
{
    int lowerOperator;
    int lower;
    int upperOperator;
    int upper;
};

constexpr int noOperator = 0;
constexpr int from = MatchingCriteria::GreaterOrEqual;
constexpr int below = MatchingCriteria::Less;

struct BandParameter
{
    const char* parameter;
    const char* property;
    Band bands[5];
};

// The fourth weight band starts at 100, not at 250: clients rely on bold selections that take in what lies between.
const BandParameter bandParameters[] = {
    {"font_weight",
     "hwe",
     {{noOperator, 0, below, 100},
      {from, 100, below, 170},
      {from, 170, below, 250},
      {from, 100, below, 500},
      {from, 500, noOperator, 0}}},
    {"font_width",
     "specificWidth",
     {{noOperator, 0, below, 800},
      {from, 800, below, 1400},
      {from, 1400, below, 1800},
      {from, 1800, below, 2500},
      {from, 2500, noOperator, 0}}},
    {"optical_size",
     "opticalSize",
     {{noOperator, 0, below, 70},
      {from, 70, below, 130},
      {from, 130, below, 200},
      {from, 200, below, 300},
      {from, 300, noOperator, 0}}},
    {"italic_angle",
     "italicAngle",
     {{MatchingCriteria::Equal, 0, noOperator, 0},
      {MatchingCriteria::Greater, 0, below, 15},
      {from, 15, below, 30},
      {from, 30, below, 45},
      {from, 45, noOperator, 0}}},
};

void addBands(const QHash<QString, QString>& parameters, MatchingCriteria& criteria)
{
    for (const BandParameter& row : bandParameters) {
        const int number = parameters.value(text(row.parameter)).toInt();
        if (number < 1 || number > int(std::size(row.bands)))
            continue;
        const Band& band = row.bands[number - 1];
        if (band.lowerOperator != noOperator)
            criteria.append(MatchingCriteria::leaf(band.lowerOperator, text(row.property), band.lower));
        if (band.upperOperator != noOperator)
            criteria.append(MatchingCriteria::leaf(band.upperOperator, text(row.property), band.upper));
    }
}

// Every word has to occur in one of the properties.
void addSearch(const QHash<QString, QString>& parameters, MatchingCriteria& criteria)
{
    static const QRegularExpression space(QStringLiteral("\\s+"));
    const QStringList words = parameters.value(text("textual_search_term")).split(space, Qt::SkipEmptyParts);
    const QString given = parameters.value(text("textual_search_properties"));
    const QStringList properties = given.isEmpty() ? QStringList{text("familyName"), text("styleName")} : parts(given);
    const MatchingCriteriaPtr all = MatchingCriteria::allOf();
    for (const QString& word : words) {
        const MatchingCriteriaPtr any = MatchingCriteria::anyOf();
        for (const QString& property : properties)
            any->append(MatchingCriteria::leaf(MatchingCriteria::Contains, property, word, Qt::CaseInsensitive));
        if (!any->isEmpty())
            all->append(any);
    }
    if (!all->isEmpty())
        criteria.append(all);
}

} // namespace

MatchingCriteriaPtr criteriaFromQuery(const QHash<QString, QString>& parameters)
{
    const MatchingCriteriaPtr criteria = MatchingCriteria::allOf();

    const QVariantList ids = numbers(parameters.value(text("id")));
    if (!ids.isEmpty())
        criteria->append(MatchingCriteria::leaf(MatchingCriteria::InList, text("id"), ids));

    const QVariantList subsets = numbers(parameters.value(text("supported_subsets")));
    if (!subsets.isEmpty()) {
        QSet<int> asked;
        for (const QVariant& subset : subsets)
            asked.insert(subset.toInt());
        criteria->append(
            MatchingCriteria::leaf(MatchingCriteria::Contains, text("supportedSubsets"), QVariant::fromValue(asked)));
    }

    if (parameters.contains(text("foundry")))
        criteria->append(
            MatchingCriteria::leaf(MatchingCriteria::Equal, text("foundry"), parameters.value(text("foundry"))));

    // The catalogue knows three formats, so three names are no restriction.
    const QStringList formats = parts(parameters.value(text("format")));
    if (!formats.isEmpty() && formats.size() != 3) {
        const MatchingCriteriaPtr any = MatchingCriteria::anyOf();
        for (const QString& format : formats)
            any->append(MatchingCriteria::leaf(MatchingCriteria::Equal, text("format"), format));
        criteria->append(any);
    }

    addSearch(parameters, *criteria);

    static const QPair<const char*, const char*> classes[] = {
        {"serif", "isSerif"}, {"symbol", "isSymbol"}, {"monospaced", "isMonospacedClass"}};
    for (const auto& entry : classes) {
        const auto asked = ResourceHandler::parseBool(parameters.value(text(entry.first)));
        if (asked)
            criteria->append(MatchingCriteria::leaf(MatchingCriteria::Equal, text(entry.second), *asked));
    }

    addBands(parameters, *criteria);
    return criteria;
}

Paging Paging::fromQuery(const QHash<QString, QString>& parameters)
{
    Paging paging;
    paging.page = parameters.value(text("page"), text("-1")).toInt();
    paging.perPage = parameters.value(text("per_page"), text("-1")).toInt();
    return paging;
}

int Paging::first(int count) const
{
    return isOn() ? int(qMin(qint64(count), page * perPage)) : 0;
}

int Paging::last(int count) const
{
    return isOn() ? int(qMin(qint64(count), page * perPage + perPage)) : count;
}

bool Paging::isPastEnd(int count) const
{
    return isOn() && page >= 1 && page * perPage >= count;
}

} // namespace api::rest
