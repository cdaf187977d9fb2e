#pragma once

#include "qtService/management/FontGroup.h"

// The fonts the user has hidden.
class HiddenFontsGroup : public FontGroup
{
    Q_OBJECT

public:
    explicit HiddenFontsGroup(const QSharedPointer<FontCollectionInterface>& source);
};
