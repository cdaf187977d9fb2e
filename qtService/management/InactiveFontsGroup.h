#pragma once

#include "qtService/management/FontGroup.h"

class InactiveFontsGroup : public FontGroup
{
    Q_OBJECT

public:
    explicit InactiveFontsGroup(const QSharedPointer<FontCollectionInterface>& source);
};
