#pragma once

#include "qtService/app/core/KrvSingletonObject.h"
#include "qtService/database/FontFeatures.h"

#include <QHash>
#include <QObject>

// Makes features from what the adder program reports about a face: a vector for each character code.
class AdderDataFeatureFactory : public QObject, public KrvSingletonObject<AdderDataFeatureFactory>
{
    Q_OBJECT

public:
    explicit AdderDataFeatureFactory(QObject* parent = nullptr);

    // The font id is set by the caller, once the face has one.
    FontFeaturesPtr createFeatures(const QHash<int, QList<float>>& features) const;
};
