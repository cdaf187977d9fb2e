#pragma once

#include "qtService/database/FeatureRepositoryStrategy.h"
#include "qtService/database/FontDatabase.h"

// Shape features in the table "feature" of fms.db.
class RelationalFeatureRepositoryStrategy : public FeatureRepositoryStrategy
{
public:
    explicit RelationalFeatureRepositoryStrategy(const QSharedPointer<FontDatabase>& database);

    FontFeaturesPtr features(int fontId) override;
    QList<FontFeaturesPtr> allFeatures() override;
    bool addFeatures(const QList<FontFeaturesPtr>& features) override;
    bool addFeatures(const FontFeaturesPtr& features) override;
    bool updateFeatures(const QList<FontFeaturesPtr>& features) override;
    bool updateFeatures(const FontFeaturesPtr& features) override;
    bool removeFeatures(const QList<FontFeaturesPtr>& features) override;
    bool removeFeatures(const FontFeaturesPtr& features) override;
    int featuresCount() override;
    bool containsFeatures(int fontId) override;
    bool removeAllFeatures() override;

private:
    const QSharedPointer<FontDatabase> m_database;
};
