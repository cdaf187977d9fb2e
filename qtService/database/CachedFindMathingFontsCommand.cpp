#include "qtService/database/CachedFindMathingFontsCommand.h"

#include "qtService/database/CompiledCriteria.h"
#include "qtService/database/FontOrder.h"

CachedFindMathingFontsCommand::CachedFindMathingFontsCommand(const QList<StaticFontPtr>& snapshot,
                                                             const MatchingCriteriaPtr& criteria, bool idsOnly)
    : FindMathingFontsCommand(criteria, idsOnly)
    , m_snapshot(snapshot)
{
}

CachedFindMathingFontsCommand::~CachedFindMathingFontsCommand()
{
    waitForFinished();
}

void CachedFindMathingFontsCommand::operator()()
{
    if (state() == Cancelled)
        return;
    setState(Running);

    const CompiledCriteria compiled(criteria());
    QList<StaticFontPtr> matching;
    if (compiled.matchesEverything()) {
        matching = m_snapshot;
    } else {
        for (const StaticFontPtr& font : m_snapshot) {
            if (state() == Cancelled)
                break;
            if (compiled.matches(*font))
                matching.append(font);
        }
    }
    if (!orderProperty().isEmpty())
        FontOrder(orderProperty(), sortOrder()).sort(matching);
    setResult(matching);
    setState(Finished);
}
