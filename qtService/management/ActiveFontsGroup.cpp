#include "qtService/management/ActiveFontsGroup.h"

#include "qtService/database/MatchingCriteria.h"

ActiveFontsGroup::ActiveFontsGroup(const QSharedPointer<FontCollectionInterface>& source)
    : FontGroup(source, tr("Active Fonts"), Start::Empty)
{
    setCriteria(MatchingCriteria::allOf(
        {MatchingCriteria::leaf(MatchingCriteria::NotEqual, QStringLiteral("activityType"), 0)}));
}
