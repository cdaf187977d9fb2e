#include "helpers/common/FeatureBlob.h"

#include <cstring>

namespace kerval::helpers {

static_assert(sizeof(float) == 4);
static_assert(sizeof(FeatureVector) == featureByteCount);

std::string toBytes(const FeatureVector& vector)
{
    return std::string(reinterpret_cast<const char*>(vector.data()), featureByteCount);
}

bool fromBytes(std::string_view bytes, FeatureVector& vector)
{
    if (bytes.size() != featureByteCount)
        return false;
    std::memcpy(vector.data(), bytes.data(), featureByteCount);
    return true;
}

void appendFeature(std::string& blob, unsigned char key, const FeatureVector& vector)
{
    blob += static_cast<char>(key);
    blob.append(reinterpret_cast<const char*>(vector.data()), featureByteCount);
}

FeatureBlobReader::FeatureBlobReader(std::string_view blob)
    : m_rest(blob)
{
}

bool FeatureBlobReader::next(unsigned char& key, std::string_view& vectorBytes)
{
    if (m_rest.size() < 1 + featureByteCount)
        return false;
    key = static_cast<unsigned char>(m_rest.front());
    vectorBytes = m_rest.substr(1, featureByteCount);
    m_rest.remove_prefix(1 + featureByteCount);
    return true;
}

} // namespace kerval::helpers
