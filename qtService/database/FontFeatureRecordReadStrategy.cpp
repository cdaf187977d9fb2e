#include "qtService/database/FontFeatureRecordReadStrategy.h"

FontFeatureRecordReadStrategy::FontFeatureRecordReadStrategy(const QList<FontFeaturesPtr>& features)
    : m_features(features)
{
}

const QHash<QString, FontDatabase::FeatureTableColumn>& FontFeatureRecordReadStrategy::propertyColumns()
{
    static const QHash<QString, FontDatabase::FeatureTableColumn> columns{
        {QStringLiteral("fontId"), FontDatabase::font_id},
        {QStringLiteral("character"), FontDatabase::character},
        {QStringLiteral("featureData"), FontDatabase::featuredata}};
    return columns;
}

QByteArray FontFeatureRecordReadStrategy::blob(const FontFeatures& features)
{
    QByteArray bytes;
    const QList<ushort> keys = features.keys();
    for (ushort key : keys) {
        bytes.append(char(key));
        const auto vectors = features.vectors(key);
        for (const QVector<float>& vector : vectors)
            bytes.append(reinterpret_cast<const char*>(vector.constData()), int(sizeof(float)) * vector.size());
    }
    return bytes;
}

QVariant FontFeatureRecordReadStrategy::value(int row, FontDatabase::FeatureTableColumn column)
{
    const FontFeaturesPtr features = m_features.value(row);
    if (!features)
        return QVariant();
    switch (column) {
    case FontDatabase::font_id:
        return features->fontId();
    case FontDatabase::character:
        return features->keys().size();
    case FontDatabase::featuredata:
        return blob(*features);
    }
    return QVariant();
}

QVariant FontFeatureRecordReadStrategy::value(int row, int columnIndex)
{
    return columnIndex >= 0 && columnIndex < columnCount() ? value(row, columns().at(columnIndex)) : QVariant();
}

int FontFeatureRecordReadStrategy::rowCount()
{
    return m_features.size();
}

int FontFeatureRecordReadStrategy::columnCount()
{
    return 3;
}

QList<FontDatabase::FeatureTableColumn> FontFeatureRecordReadStrategy::columns()
{
    return {FontDatabase::font_id, FontDatabase::character, FontDatabase::featuredata};
}
