#include "qtService/management/HiddenFontsGroup.h"

#include "qtService/database/MatchingCriteria.h"

HiddenFontsGroup::HiddenFontsGroup(const QSharedPointer<FontCollectionInterface>& source)
    : FontGroup(source, tr("Hidden Fonts"), Start::Empty)
{
    setCriteria(
        MatchingCriteria::allOf({MatchingCriteria::leaf(MatchingCriteria::Equal, QStringLiteral("isHidden"), true)}));
}
