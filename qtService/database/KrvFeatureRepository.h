#pragma once

#include "qtService/database/FeatureRepositoryStrategy.h"

// The front of feature storage; forwards every operation to its strategy. Any thread may call it.
class KrvFeatureRepository : public QObject
{
    Q_OBJECT

public:
    // The characters that have features, in the order of the blocks of a stored row.
    static const QString& alphabet();

    explicit KrvFeatureRepository(const QSharedPointer<FeatureRepositoryStrategy>& strategy, QObject* parent = nullptr);

    FontFeaturesPtr features(int fontId);
    QList<FontFeaturesPtr> allFeatures();
    bool addFeatures(const QList<FontFeaturesPtr>& features);
    bool addFeatures(const FontFeaturesPtr& features);
    bool updateFeatures(const QList<FontFeaturesPtr>& features);
    bool updateFeatures(const FontFeaturesPtr& features);
    bool removeFeatures(const QList<FontFeaturesPtr>& features);
    bool removeFeatures(const FontFeaturesPtr& features);
    int featuresCount();
    bool containsFeatures(int fontId);
    bool removeAllFeatures();

private:
    const QSharedPointer<FeatureRepositoryStrategy> m_strategy;
};
