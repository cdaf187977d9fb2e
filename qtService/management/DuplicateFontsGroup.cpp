#include "qtService/management/DuplicateFontsGroup.h"

#include "qtService/database/MatchingCriteria.h"

DuplicateFontsGroup::DuplicateFontsGroup(const QSharedPointer<FontCollectionInterface>& source)
    : FontGroup(source, tr("Duplicated Fonts"), Start::Empty)
{
    setCriteria(MatchingCriteria::allOf(
        {MatchingCriteria::leaf(MatchingCriteria::Greater, QStringLiteral("duplicateCount"), 0)}));
}
