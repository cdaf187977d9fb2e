#pragma once

#include "qtService/management/FontGroup.h"

// The fonts the user has not hidden.
class AllFontsGroup : public FontGroup
{
    Q_OBJECT

public:
    explicit AllFontsGroup(const QSharedPointer<FontCollectionInterface>& source);
};
