#pragma once

#include "qtService/database/FontDatabase.h"
#include "qtService/database/FontFeatures.h"
#include "qtService/database/RecordReadStrategyInterface.h"

// Rows of table "feature" over features in memory. The blob holds, for each key, the key byte and the raw values of its
// vectors; the column "character" holds the number of keys, for whoever looks into the table.
class FontFeatureRecordReadStrategy : public RecordReadStrategyInterface<FontDatabase::FeatureTableColumn>
{
public:
    explicit FontFeatureRecordReadStrategy(const QList<FontFeaturesPtr>& features);

    // "fontId", "character" and "featureData" by the columns they are stored in.
    static const QHash<QString, FontDatabase::FeatureTableColumn>& propertyColumns();
    static QByteArray blob(const FontFeatures& features);

    QVariant value(int row, FontDatabase::FeatureTableColumn column) override;
    QVariant value(int row, int columnIndex) override;
    int rowCount() override;
    int columnCount() override;
    QList<FontDatabase::FeatureTableColumn> columns() override;

private:
    const QList<FontFeaturesPtr> m_features;
};
