#include "qtService/database/RelationalFeatureRepositoryStrategy.h"

#include "qtService/database/DatabaseTableGateway.h"
#include "qtService/database/FontFeatureRecordReadStrategy.h"
#include "qtService/database/RecordListFeatureFactory.h"

RelationalFeatureRepositoryStrategy::RelationalFeatureRepositoryStrategy(const QSharedPointer<FontDatabase>& database)
    : m_database(database)
{
}

FontFeaturesPtr RelationalFeatureRepositoryStrategy::features(int fontId)
{
    const auto rows = m_database->featureGateway()->selectOne(fontId);
    return RecordListFeatureFactory::instance()->createFeatures(*rows).value(0);
}

QList<FontFeaturesPtr> RelationalFeatureRepositoryStrategy::allFeatures()
{
    using Gateway = DatabaseTableGateway<FontDatabase::FeatureTableColumn>;
    const auto rows = m_database->featureGateway()->select({}, {}, Gateway::ForwardOnly);
    return RecordListFeatureFactory::instance()->createFeatures(*rows);
}

bool RelationalFeatureRepositoryStrategy::addFeatures(const QList<FontFeaturesPtr>& features)
{
    FontFeatureRecordReadStrategy rows(features);
    const QList<QVariant> ids = m_database->featureGateway()->insert(rows);
    return ids.size() == features.size() &&
           std::all_of(ids.cbegin(), ids.cend(), [](const QVariant& id) { return id.isValid(); });
}

bool RelationalFeatureRepositoryStrategy::addFeatures(const FontFeaturesPtr& features)
{
    return addFeatures(QList<FontFeaturesPtr>{features});
}

bool RelationalFeatureRepositoryStrategy::updateFeatures(const QList<FontFeaturesPtr>& features)
{
    FontFeatureRecordReadStrategy rows(features);
    return m_database->featureGateway()->update(rows);
}

bool RelationalFeatureRepositoryStrategy::updateFeatures(const FontFeaturesPtr& features)
{
    return updateFeatures(QList<FontFeaturesPtr>{features});
}

bool RelationalFeatureRepositoryStrategy::removeFeatures(const QList<FontFeaturesPtr>& features)
{
    QVariantList ids;
    for (const FontFeaturesPtr& one : features) {
        if (one)
            ids.append(one->fontId());
    }
    return m_database->featureGateway()->removeIn(ids);
}

bool RelationalFeatureRepositoryStrategy::removeFeatures(const FontFeaturesPtr& features)
{
    return removeFeatures(QList<FontFeaturesPtr>{features});
}

int RelationalFeatureRepositoryStrategy::featuresCount()
{
    return m_database->featureGateway()->count();
}

bool RelationalFeatureRepositoryStrategy::containsFeatures(int fontId)
{
    // The blob of 15 kB stays in the file.
    return m_database->featureGateway()->selectOne(fontId, {FontDatabase::font_id})->hasRow(0);
}

bool RelationalFeatureRepositoryStrategy::removeAllFeatures()
{
    return m_database->featureGateway()->removeAll();
}
