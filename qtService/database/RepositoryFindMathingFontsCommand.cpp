#include "qtService/database/RepositoryFindMathingFontsCommand.h"

#include "qtService/database/CompiledCriteria.h"
#include "qtService/database/FontRepositoryStrategy.h"

namespace {

bool isKnownInMemoryOnly(const MatchingCriteriaPtr& condition)
{
    const QString property = condition->propertyName();
    return property == QLatin1String("activityType") || property == QLatin1String("duplicateCount") ||
           property == QLatin1String("isHidden");
}

} // namespace

RepositoryFindMathingFontsCommand::RepositoryFindMathingFontsCommand(
    const QSharedPointer<FontRepositoryStrategy>& strategy, const MatchingCriteriaPtr& criteria, bool idsOnly)
    : FindMathingFontsCommand(criteria, idsOnly)
    , m_strategy(strategy)
{
}

RepositoryFindMathingFontsCommand::~RepositoryFindMathingFontsCommand()
{
    waitForFinished();
}

void RepositoryFindMathingFontsCommand::operator()()
{
    if (state() == Cancelled)
        return;
    setState(Running);

    MatchingCriteriaPtr stored = criteria();
    QList<MatchingCriteriaPtr> inMemory;
    if (stored && stored->groupKind() == MatchingCriteria::AllOf) {
        QList<MatchingCriteriaPtr> others;
        for (const MatchingCriteriaPtr& condition : stored->children())
            (isKnownInMemoryOnly(condition) ? inMemory : others).append(condition);
        if (!inMemory.isEmpty())
            stored = MatchingCriteria::allOf(others);
    }

    const FindMathingFontsCommandPtr query =
        m_strategy->createFindMathingFontsCommand(stored, idsOnly() && inMemory.isEmpty());
    query->setOrdering(orderProperty(), sortOrder());
    runPart(query);
    if (state() == Cancelled)
        return;

    if (inMemory.isEmpty()) {
        setFonts(query->fonts());
        setFontIds(query->fontIds());
    } else {
        const CompiledCriteria compiled(MatchingCriteria::allOf(inMemory));
        QList<StaticFontPtr> matching;
        for (const StaticFontPtr& font : query->fonts()) {
            if (state() == Cancelled)
                return;
            if (compiled.matches(*font))
                matching.append(font);
        }
        setResult(matching);
    }
    setState(query->state() == Finished ? Finished : Failed);
}
