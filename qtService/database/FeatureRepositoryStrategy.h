#pragma once

#include "qtService/database/FontFeatures.h"

// The storage of shape features, one row for each face. Writers report whether the storage took the change.
class FeatureRepositoryStrategy
{
public:
    virtual ~FeatureRepositoryStrategy() = default;

    // Null when the face has none.
    virtual FontFeaturesPtr features(int fontId) = 0;
    virtual QList<FontFeaturesPtr> allFeatures() = 0;
    virtual bool addFeatures(const QList<FontFeaturesPtr>& features) = 0;
    virtual bool addFeatures(const FontFeaturesPtr& features) = 0;
    virtual bool updateFeatures(const QList<FontFeaturesPtr>& features) = 0;
    virtual bool updateFeatures(const FontFeaturesPtr& features) = 0;
    virtual bool removeFeatures(const QList<FontFeaturesPtr>& features) = 0;
    virtual bool removeFeatures(const FontFeaturesPtr& features) = 0;
    virtual int featuresCount() = 0;
    virtual bool containsFeatures(int fontId) = 0;
    virtual bool removeAllFeatures() = 0;
};
