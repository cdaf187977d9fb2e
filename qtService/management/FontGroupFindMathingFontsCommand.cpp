#include "qtService/management/FontGroupFindMathingFontsCommand.h"

#include "qtService/management/FontGroup.h"

#include <algorithm>

namespace {

QSharedPointer<FontCollectionInterface> rootOf(QSharedPointer<FontCollectionInterface> collection)
{
    while (const auto group = collection.objectCast<FontGroup>())
        collection = group->source();
    return collection;
}

// The ids of a condition that restricts the query to some fonts; false when it is no such condition.
bool idsOfCondition(const MatchingCriteriaPtr& condition, QList<int>* ids)
{
    if (condition->groupKind() != MatchingCriteria::Leaf || condition->propertyName() != QLatin1String("id") ||
        (condition->operatorFlags() & MatchingCriteria::Not))
        return false;
    const QVariant value = condition->value();
    if (condition->operatorFlags() & MatchingCriteria::Equal) {
        *ids = {value.toInt()};
        return true;
    }
    if (!(condition->operatorFlags() & MatchingCriteria::InList))
        return false;
    if (value.userType() == qMetaTypeId<QList<int>>()) {
        *ids = value.value<QList<int>>();
        return true;
    }
    ids->clear();
    for (const QVariant& item : value.toList())
        ids->append(item.toInt());
    return true;
}

} // namespace

FontGroupFindMathingFontsCommand::FontGroupFindMathingFontsCommand(
    const QSharedPointer<FontCollectionInterface>& source, const FontMembers& members,
    const MatchingCriteriaPtr& criteria, bool idsOnly)
    : FindMathingFontsCommand(criteria, idsOnly)
    , m_root(rootOf(source))
    , m_members(members)
{
}

FontGroupFindMathingFontsCommand::~FontGroupFindMathingFontsCommand()
{
    waitForFinished();
}

void FontGroupFindMathingFontsCommand::operator()()
{
    if (state() == Cancelled)
        return;
    setState(Running);

    const auto query = m_root->createFindMathingFontsCommand(criteriaAmongMembers(), idsOnly());
    query->setOrdering(orderProperty(), sortOrder());
    runPart(query);
    if (state() == Cancelled)
        return;

    const bool ownOrder = orderProperty().isEmpty();
    if (idsOnly())
        setFontIds(ownOrder ? m_members.inOrder(query->fontIds()) : membersAmong(query->fontIds()));
    else
        setFonts(ownOrder ? inGroupOrder(query->fonts()) : membersAmong(query->fonts()));
    setState(query->state() == Finished ? Finished : Failed);
}

// A query that asks for some fonts by id is cut down to the members among them here, where that is a hash test; the
// root then looks these up instead of reading the whole catalogue.
MatchingCriteriaPtr FontGroupFindMathingFontsCommand::criteriaAmongMembers() const
{
    const MatchingCriteriaPtr asked = criteria();
    QList<MatchingCriteriaPtr> conditions;
    if (asked && asked->groupKind() == MatchingCriteria::AllOf)
        conditions = asked->children();
    else if (asked)
        conditions.append(asked);

    for (int i = 0; i < conditions.size(); ++i) {
        QList<int> ids;
        if (idsOfCondition(conditions.at(i), &ids)) {
            conditions[i] = MatchingCriteria::idIn(m_members.inOrder(ids));
            return MatchingCriteria::allOf(conditions);
        }
    }
    // A group that holds much of the catalogue is cheaper taken from all matches than named font by font.
    if (m_members.count() < m_root->fontCount() / 4)
        conditions.prepend(MatchingCriteria::idIn(m_members.ids()));
    return MatchingCriteria::allOf(conditions);
}

QList<int> FontGroupFindMathingFontsCommand::membersAmong(QList<int> fontIds) const
{
    const auto isStranger = [this](int id) { return !m_members.contains(id); };
    fontIds.erase(std::remove_if(fontIds.begin(), fontIds.end(), isStranger), fontIds.end());
    return fontIds;
}

QList<StaticFontPtr> FontGroupFindMathingFontsCommand::membersAmong(QList<StaticFontPtr> fonts) const
{
    const auto isStranger = [this](const StaticFontPtr& font) { return !m_members.contains(font->id()); };
    fonts.erase(std::remove_if(fonts.begin(), fonts.end(), isStranger), fonts.end());
    return fonts;
}

QList<StaticFontPtr> FontGroupFindMathingFontsCommand::inGroupOrder(const QList<StaticFontPtr>& fonts) const
{
    QList<int> ids;
    ids.reserve(fonts.size());
    for (const StaticFontPtr& font : fonts)
        ids.append(font->id());
    const QList<int> ordered = m_members.inOrder(ids);
    if (ordered == ids)
        return fonts;
    QHash<int, StaticFontPtr> byId;
    byId.reserve(fonts.size());
    for (int i = 0; i < fonts.size(); ++i)
        byId.insert(ids.at(i), fonts.at(i));
    QList<StaticFontPtr> result;
    result.reserve(ordered.size());
    for (int id : ordered)
        result.append(byId.value(id));
    return result;
}
