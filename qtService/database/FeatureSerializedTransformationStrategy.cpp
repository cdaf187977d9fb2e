#include "qtService/database/FeatureSerializedTransformationStrategy.h"

QString FeatureSerializedTransformationStrategy::transformStatement(const QString& statement) const
{
    return statement;
}

QString FeatureSerializedTransformationStrategy::restoreName(const QString& name) const
{
    return name;
}

QVariant FeatureSerializedTransformationStrategy::toDatabase(FontDatabase::FeatureTableColumn,
                                                             const QVariant& value) const
{
    return value;
}

QVariant FeatureSerializedTransformationStrategy::fromDatabase(FontDatabase::FeatureTableColumn,
                                                               const QVariant& value) const
{
    return value;
}
