#pragma once

#include "qtService/management/FontGroup.h"

// The fonts that are active, temporarily or permanently.
class ActiveFontsGroup : public FontGroup
{
    Q_OBJECT

public:
    explicit ActiveFontsGroup(const QSharedPointer<FontCollectionInterface>& source);
};
