#include "qtService/database/RecordListFeatureFactory.h"

#include "helpers/common/FeatureBlob.h"

#include <cstring>

namespace {

constexpr int VectorsPerKey = int(kerval::helpers::featureAlphabet.size());
constexpr int BytesOfVector = int(kerval::helpers::featureByteCount);
constexpr int BytesRead = int(kerval::helpers::featureValueCount);

} // namespace

RecordListFeatureFactory::RecordListFeatureFactory(QObject* parent)
    : QObject(parent)
{
}

QList<FontFeaturesPtr>
RecordListFeatureFactory::createFeatures(SqlRecordReadStrategy<FontDatabase::FeatureTableColumn>& rows) const
{
    QList<FontFeaturesPtr> list;
    for (int row = 0; rows.hasRow(row); ++row) {
        FontFeaturesPtr features = fromBlob(rows.value(row, FontDatabase::featuredata).toByteArray());
        features->setFontId(rows.value(row, FontDatabase::font_id).toInt());
        list.append(features);
    }
    return list;
}

FontFeaturesPtr RecordListFeatureFactory::fromBlob(const QByteArray& blob)
{
    auto features = FontFeaturesPtr::create();
    int position = 0;
    while (position < blob.size()) {
        const auto key = ushort(uchar(blob.at(position++)));
        for (int i = 0; i < VectorsPerKey && position < blob.size(); ++i) {
            const int values = qMin(BytesRead, blob.size() - position) / int(sizeof(float));
            QVector<float> vector(values);
            std::memcpy(vector.data(), blob.constData() + position, size_t(values) * sizeof(float));
            features->insert(key, vector);
            position += BytesOfVector;
        }
    }
    return features;
}
