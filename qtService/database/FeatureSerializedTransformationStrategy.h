#pragma once

#include "qtService/database/FontDatabase.h"

// Rows of table "feature" are stored as they are given.
class FeatureSerializedTransformationStrategy
    : public ColumnDataTransformationStrategy<FontDatabase::FeatureTableColumn>
{
public:
    QString transformStatement(const QString& statement) const override;
    QString restoreName(const QString& name) const override;
    QVariant toDatabase(FontDatabase::FeatureTableColumn column, const QVariant& value) const override;
    QVariant fromDatabase(FontDatabase::FeatureTableColumn column, const QVariant& value) const override;
};
