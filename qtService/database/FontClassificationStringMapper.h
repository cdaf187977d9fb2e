#pragma once

#include "qtService/app/core/KrvSingletonObject.h"
#include "qtService/database/AbstractEnumStringMapper.h"
#include "qtService/database/StaticFont.h"

// The keywords of the font classes as they stand in a record's otherInfo2 and in the classification files of the
// similarity programs; their spelling is part of those formats.
class FontClassificationStringMapper
    : public AbstractEnumStringMapper<FontClassificationStringMapper, fms::StaticFont::Classification>,
      public KrvSingletonObject<FontClassificationStringMapper>
{
public:
    explicit FontClassificationStringMapper(QObject* parent = nullptr);
};
