#include "qtService/database/FontFeatures.h"

FontFeatures::FontFeatures() = default;

int FontFeatures::fontId() const
{
    return m_fontId;
}

void FontFeatures::setFontId(int fontId)
{
    m_fontId = fontId;
}

void FontFeatures::insert(ushort key, const QVector<float>& vector)
{
    m_vectors[key].append(vector);
}

QList<ushort> FontFeatures::keys() const
{
    return m_vectors.keys();
}

QList<QVector<float>> FontFeatures::vectors(ushort key) const
{
    return m_vectors.value(key);
}

bool FontFeatures::isEmpty() const
{
    return m_vectors.isEmpty();
}

int FontFeatures::vectorCount() const
{
    int count = 0;
    for (const auto& vectors : m_vectors)
        count += vectors.size();
    return count;
}
