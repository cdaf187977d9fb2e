#pragma once

#include "qtService/management/FontGroup.h"

// The fonts of which the catalogue holds another copy.
class DuplicateFontsGroup : public FontGroup
{
    Q_OBJECT

public:
    explicit DuplicateFontsGroup(const QSharedPointer<FontCollectionInterface>& source);
};
