#include "helpers/shape/GlyphFeatures.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "helpers/shape/GlyphInk.h"
#include "helpers/shape/GlyphMeasures.h"

namespace krv {

const char kFeatureLetters[kFeatureLetterCount + 1] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";

int featureLetterIndex(int character)
{
    const char* place = character > 0 && character < 128 ? std::strchr(kFeatureLetters, character) : nullptr;
    return place ? static_cast<int>(place - kFeatureLetters) : -1;
}

namespace {

// Keeps ratios of strokes finite where one of them is missing, in pixels.
constexpr float kHairline = 0.2F;

// Of the cosines of the ink (4 v + u) those that tell designs apart best.
constexpr std::size_t kCosines[] = {3, 5, 6, 7, 8, 10, 12, 13, 14, 15, 19, 20};

} // namespace

bool isMeasured(const GlyphFeatures& features)
{
    return std::any_of(features.begin(), features.end(), [](float value) { return value != 0; });
}

bool measureGlyph(const GlyphCoverage& coverage, const GlyphPlacement* placement, GlyphFeatures& features)
{
    features.fill(0);
    const GlyphInk ink(coverage);
    if (ink.isEmpty()) {
        return false;
    }
    fillGlyphFeatures(ink, GlyphMeasures::of(ink), placement, features);
    return true;
}

void fillGlyphFeatures(const GlyphInk& ink, const GlyphMeasures& measures, const GlyphPlacement* placement,
                       GlyphFeatures& features)
{
    features.fill(0);
    const float height = ink.boxHeight();
    const float width = ink.boxWidth();
    int place = 0;
    const auto add = [&](float value) {
        features[static_cast<std::size_t>(place++)] = std::isfinite(value) ? std::clamp(value, -8.0F, 8.0F) : 0.0F;
    };
    const auto ratio = [](float one, float other) { return std::log((one + kHairline) / (other + kHairline)); };
    const RunLengths& across = measures.across;
    const RunLengths& down = measures.down;
    add(std::log(width / height));
    add(down.low / height);
    add(std::log((down.high + 0.3F) / height));
    add(ratio(across.middle, down.middle));
    add(ratio(across.high, across.low));
    add(ratio(down.high, down.low));
    for (const float direction : measures.directions) {
        add(direction);
    }
    add(measures.slant);
    for (const std::size_t cosine : kCosines) {
        add(measures.cosines[cosine]);
    }
    for (const int band : {0, 2, 3}) {
        add(measures.leftProfile[static_cast<std::size_t>(band)] / height);
    }
    for (const float distance : measures.rightProfile) {
        add(distance / height);
    }
    for (const int band : {0, 1, 3}) {
        add(measures.topProfile[static_cast<std::size_t>(band)] / height);
    }
    add(measures.bottomProfile[3] / height);
    for (const float crossings : measures.rowCrossings) {
        add(crossings / 4);
    }
    add(measures.columnCrossings / 4);
    add(static_cast<float>(measures.holeCount) / 2);
    add(ratio(measures.headRun, across.middle));
    for (const float moment : measures.field) {
        add(moment);
    }
    add(measures.perimeter / (width + height));
    if (placement && placement->capitalHeight > 0) {
        place = kFirstPlacementValue;
        const float unit = 1 / placement->capitalHeight;
        const float left = placement->left + ink.coverageLeft() + ink.boxLeft() * ink.scale();
        const float top = placement->top - ink.coverageTop() - ink.boxTop() * ink.scale();
        add(height * ink.scale() * unit);
        add((top - height * ink.scale()) * unit);
        add(left * unit);
        add((placement->advance - left - width * ink.scale()) * unit);
        add(placement->advance * unit);
    }
}

} // namespace krv
