#include "helpers/shape/FaceAnalysis.h"

#include <algorithm>

#include "helpers/shape/FaceClassifier.h"
#include "helpers/shape/FaceMeasures.h"
#include "helpers/shape/FaceRaster.h"
#include "helpers/shape/GlyphInk.h"
#include "helpers/shape/SmartChoiceScores.h"

namespace krv {

namespace {

// Height of the capitals; a face without them is measured by what it has.
float capitalHeight(FaceRaster& raster)
{
    for (const char letter : {'H', 'E', 'I', 'T', 'N', 'Z', '1'}) {
        const float top = raster.topOf(raster.glyphFor(static_cast<unsigned char>(letter)));
        if (top > 0) {
            return top;
        }
    }
    const float small = raster.topOf(raster.glyphFor('x'));
    return small > 0 ? 1.4F * small : 0.7F * raster.pixelsPerEm();
}

float xHeight(FaceRaster& raster)
{
    for (const char letter : {'x', 'z', 'v', 'o', 'n'}) {
        const float top = raster.topOf(raster.glyphFor(static_cast<unsigned char>(letter)));
        if (top > 0) {
            return top;
        }
    }
    return 0;
}

bool drawLetter(FaceRaster& raster, unsigned glyph, float capitals, LetterShape& letter, GlyphFeatures& features)
{
    GlyphCoverage coverage;
    GlyphPlacement placement;
    placement.capitalHeight = capitals;
    if (!raster.draw(glyph, coverage, placement)) {
        return false;
    }
    const GlyphInk ink(coverage);
    if (ink.isEmpty()) {
        return false;
    }
    letter.measures = GlyphMeasures::of(ink);
    fillGlyphFeatures(ink, letter.measures, &placement, features);
    letter.present = true;
    letter.glyph = glyph;
    letter.width = ink.boxWidth() * ink.scale();
    letter.height = ink.boxHeight() * ink.scale();
    letter.left = placement.left + ink.coverageLeft() + ink.boxLeft() * ink.scale();
    letter.bottom = placement.top - ink.coverageTop() - ink.boxTop() * ink.scale() - letter.height;
    letter.advance = placement.advance;
    return true;
}

} // namespace

FaceAnalysis FaceAnalysis::analyse(FT_Face face)
{
    FaceAnalysis analysis;
    FaceRaster raster(face);
    if (!raster.isUsable()) {
        return analysis;
    }
    FaceShape shape;
    shape.pixelsPerEm = raster.pixelsPerEm();
    shape.capitalHeight = capitalHeight(raster);
    shape.xHeight = xHeight(raster);
    for (std::size_t i = 0; i < kFeatureLetterCount; ++i) {
        const unsigned glyph = raster.glyphFor(static_cast<unsigned char>(kFeatureLetters[i]));
        if (glyph != 0 && drawLetter(raster, glyph, shape.capitalHeight, shape.letters[i], analysis.features[i])) {
            ++shape.present;
        }
    }
    const FaceMeasures measures = FaceMeasures::of(face, shape);
    const FaceClass faceClass = FaceClass::of(face, shape, analysis.features);
    const SmartChoiceScores scores = SmartChoiceScores::of(face, shape, measures, faceClass);
    analysis.hwe = measures.hwe;
    analysis.hwi = measures.hwi;
    analysis.hhe = measures.hhe;
    analysis.specificWidth = measures.specificWidth;
    analysis.specificHeight = measures.specificHeight;
    analysis.italicAngle = measures.italicAngle;
    analysis.serifStyle = faceClass.serifStyle;
    analysis.styleField = faceClass.styleField;
    analysis.classification = faceClass.keywords;
    analysis.smartChoiceAll = scores.all;
    analysis.smartChoiceBody = scores.body;
    analysis.smartChoiceHead = scores.head;
    return analysis;
}

} // namespace krv
