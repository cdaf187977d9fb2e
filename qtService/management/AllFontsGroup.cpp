#include "qtService/management/AllFontsGroup.h"

#include "qtService/database/MatchingCriteria.h"

AllFontsGroup::AllFontsGroup(const QSharedPointer<FontCollectionInterface>& source)
    : FontGroup(source, tr("All Fonts"), Start::Empty)
{
    setCriteria(
        MatchingCriteria::allOf({MatchingCriteria::leaf(MatchingCriteria::Equal, QStringLiteral("isHidden"), false)}));
}
