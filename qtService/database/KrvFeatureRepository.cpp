#include "qtService/database/KrvFeatureRepository.h"

const QString& KrvFeatureRepository::alphabet()
{
    static const QString characters = QStringLiteral("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789");
    return characters;
}

KrvFeatureRepository::KrvFeatureRepository(const QSharedPointer<FeatureRepositoryStrategy>& strategy, QObject* parent)
    : QObject(parent)
    , m_strategy(strategy)
{
}

FontFeaturesPtr KrvFeatureRepository::features(int fontId)
{
    return m_strategy->features(fontId);
}

QList<FontFeaturesPtr> KrvFeatureRepository::allFeatures()
{
    return m_strategy->allFeatures();
}

bool KrvFeatureRepository::addFeatures(const QList<FontFeaturesPtr>& features)
{
    return m_strategy->addFeatures(features);
}

bool KrvFeatureRepository::addFeatures(const FontFeaturesPtr& features)
{
    return m_strategy->addFeatures(features);
}

bool KrvFeatureRepository::updateFeatures(const QList<FontFeaturesPtr>& features)
{
    return m_strategy->updateFeatures(features);
}

bool KrvFeatureRepository::updateFeatures(const FontFeaturesPtr& features)
{
    return m_strategy->updateFeatures(features);
}

bool KrvFeatureRepository::removeFeatures(const QList<FontFeaturesPtr>& features)
{
    return m_strategy->removeFeatures(features);
}

bool KrvFeatureRepository::removeFeatures(const FontFeaturesPtr& features)
{
    return m_strategy->removeFeatures(features);
}

int KrvFeatureRepository::featuresCount()
{
    return m_strategy->featuresCount();
}

bool KrvFeatureRepository::containsFeatures(int fontId)
{
    return m_strategy->containsFeatures(fontId);
}

bool KrvFeatureRepository::removeAllFeatures()
{
    return m_strategy->removeAllFeatures();
}
