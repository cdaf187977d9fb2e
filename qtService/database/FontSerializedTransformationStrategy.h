#pragma once

#include "qtService/database/FontDatabase.h"

// Between the properties of a font record and what table "font" stores: sets as texts, flags and dates as numbers.
class FontSerializedTransformationStrategy : public ColumnDataTransformationStrategy<FontDatabase::FontTableColumn>
{
public:
    FontSerializedTransformationStrategy();

    QString transformStatement(const QString& statement) const override;
    QString restoreName(const QString& name) const override;
    QVariant toDatabase(FontDatabase::FontTableColumn column, const QVariant& value) const override;
    QVariant fromDatabase(FontDatabase::FontTableColumn column, const QVariant& value) const override;
};
