#include "qtService/database/AdderDataFeatureFactory.h"

AdderDataFeatureFactory::AdderDataFeatureFactory(QObject* parent)
    : QObject(parent)
{
}

FontFeaturesPtr AdderDataFeatureFactory::createFeatures(const QHash<int, QList<float>>& features) const
{
    auto result = FontFeaturesPtr::create();
    for (auto it = features.cbegin(); it != features.cend(); ++it)
        result->insert(ushort(it.key()), it.value().toVector());
    return result;
}
