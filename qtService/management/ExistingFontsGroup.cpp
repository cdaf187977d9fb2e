#include "qtService/management/ExistingFontsGroup.h"

#include "qtService/database/MatchingCriteria.h"

ExistingFontsGroup::ExistingFontsGroup(const QSharedPointer<FontCollectionInterface>& source)
    : FontGroup(source, tr("Existing Fonts"), Start::Empty)
{
    setCriteria(
        MatchingCriteria::allOf({MatchingCriteria::leaf(MatchingCriteria::Equal, QStringLiteral("fileExists"), true)}));
}
