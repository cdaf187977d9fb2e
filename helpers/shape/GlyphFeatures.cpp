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
    add(std::log(width / height));
    add(measures.area / (width * height));
    add(2 * measures.area / std::max(measures.perimeter, 0.1F) / height);
    for (const RunLengths* runs : {&measures.across, &measures.down}) {
        add(runs->low / height);
        add(runs->middle / height);
        add(runs->high / height);
    }
    add(std::log((measures.across.middle + 0.2F) / (measures.down.middle + 0.2F)));
    for (const float direction : measures.directions) {
        add(direction);
    }
    add(measures.slant);
    for (std::size_t i = 1; i < measures.cosines.size(); ++i) {
        add(measures.cosines[i]);
    }
    for (const float distance : measures.leftProfile) {
        add(distance / height);
    }
    for (const float distance : measures.rightProfile) {
        add(distance / height);
    }
    for (const float crossings : measures.rowCrossings) {
        add(crossings / 4);
    }
    add(measures.holes);
    add(std::log((measures.footRun + 0.2F) / (measures.across.middle + 0.2F)));
    add(std::log((measures.headRun + 0.2F) / (measures.across.middle + 0.2F)));
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
