#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace kerval::helpers {

constexpr std::size_t featureValueCount = 61;
constexpr std::size_t featureByteCount = featureValueCount * 4;

// The shape of one character; all zero when the face has no glyph for it.
using FeatureVector = std::array<float, featureValueCount>;

// The characters that are measured, in the order of the catalogue's feature alphabet.
constexpr std::string_view featureAlphabet = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";

// The 244 bytes of a vector in the machine's byte order.
std::string toBytes(const FeatureVector& vector);

// False when there are not exactly 244 bytes.
bool fromBytes(std::string_view bytes, FeatureVector& vector);

// The column "featuredata" of one font: one key byte (the character's code) and 244 bytes, repeated.
void appendFeature(std::string& blob, unsigned char key, const FeatureVector& vector);

// Walks such a column in place; a cut last item ends the walk.
class FeatureBlobReader
{
public:
    explicit FeatureBlobReader(std::string_view blob);

    // The view holds exactly 244 bytes and lives as long as the blob.
    bool next(unsigned char& key, std::string_view& vectorBytes);

private:
    std::string_view m_rest;
};

} // namespace kerval::helpers
