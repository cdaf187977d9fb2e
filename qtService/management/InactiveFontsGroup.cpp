#include "qtService/management/InactiveFontsGroup.h"

#include "qtService/database/MatchingCriteria.h"

InactiveFontsGroup::InactiveFontsGroup(const QSharedPointer<FontCollectionInterface>& source)
    : FontGroup(source, tr("Inactive Fonts"), Start::Empty)
{
    setCriteria(
        MatchingCriteria::allOf({MatchingCriteria::leaf(MatchingCriteria::Equal, QStringLiteral("activityType"), 0)}));
}
