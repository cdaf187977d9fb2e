#pragma once

#include "qtService/management/FontGroup.h"

// The fonts whose file is present.
class ExistingFontsGroup : public FontGroup
{
    Q_OBJECT

public:
    explicit ExistingFontsGroup(const QSharedPointer<FontCollectionInterface>& source);
};

using ExistingFontsGroupPtr = QSharedPointer<ExistingFontsGroup>;
