#include "helpers/shape/FaceClassifier.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <initializer_list>
#include <string_view>
#include <vector>

#include "helpers/shape/FaceClassModel.h"
#include "helpers/shape/FaceMeasures.h"
#include "helpers/shape/GlyphDistance.h"

#include FT_TRUETYPE_TABLES_H

namespace krv {

namespace {

using Features = std::array<GlyphFeatures, kFeatureLetterCount>;
using Odds = std::array<float, kClassOutputs>;

// Values of the catalogue's classes.
enum Classification
{
    NoClass,
    Blackletter,
    Handwriting,
    Symbol,
    Modern,
    Typewriter,
    Headline,
    Comic,
    Classic,
    Serif,
    Monospace,
    Smallcaps,
    UncompleteLower,
    UncompleteUpper
};

constexpr int kCaseLetters = 26;
constexpr int kFewLetters = 8;
constexpr int kLettersToJudge = 10;

struct LetterStatistics
{
    std::array<float, kGlyphValueCount> mean{};
    std::array<float, kGlyphValueCount> deviation{};
    int count = 0;
};

LetterStatistics statistics(const Features& features, std::size_t first, std::size_t count)
{
    LetterStatistics result;
    for (std::size_t letter = first; letter < first + count; ++letter) {
        if (isMeasured(features[letter])) {
            ++result.count;
            for (std::size_t i = 0; i < result.mean.size(); ++i) {
                result.mean[i] += features[letter][i];
                result.deviation[i] += features[letter][i] * features[letter][i];
            }
        }
    }
    const auto number = static_cast<float>(std::max(result.count, 1));
    for (std::size_t i = 0; i < result.mean.size(); ++i) {
        result.mean[i] /= number;
        result.deviation[i] = std::sqrt(std::max(0.0F, result.deviation[i] / number - result.mean[i] * result.mean[i]));
    }
    return result;
}

Odds shapeOdds(const Features& features)
{
    LetterStatistics lower = statistics(features, 0, kCaseLetters);
    LetterStatistics upper = statistics(features, kCaseLetters, kCaseLetters);
    const LetterStatistics digits = statistics(features, 2 * kCaseLetters, 10);
    const int lowerCount = lower.count;
    const int upperCount = upper.count;
    if (lowerCount < kFewLetters) {
        lower = upper;
    }
    if (upperCount < kFewLetters) {
        upper = lower;
    }
    std::vector<float> inputs;
    inputs.reserve(kClassInputs);
    inputs.insert(inputs.end(), lower.mean.begin(), lower.mean.end());
    inputs.insert(inputs.end(), upper.mean.begin(), upper.mean.end());
    inputs.insert(inputs.end(), lower.deviation.begin(), lower.deviation.end());
    inputs.push_back(static_cast<float>(lowerCount) / kCaseLetters);
    inputs.push_back(static_cast<float>(upperCount) / kCaseLetters);
    inputs.push_back(static_cast<float>(digits.count) / 10);
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        inputs[i] = std::clamp((inputs[i] - kClassInputCentres[i]) * kClassInputScales[i], -3.0F, 3.0F);
    }
    std::array<float, kClassHidden> hidden{};
    for (std::size_t unit = 0; unit < hidden.size(); ++unit) {
        float sum = kClassHiddenOffsets[unit];
        for (std::size_t i = 0; i < inputs.size(); ++i) {
            sum += kClassHiddenWeights[unit * kClassInputs + i] * inputs[i];
        }
        hidden[unit] = std::tanh(sum);
    }
    Odds odds{};
    for (std::size_t output = 0; output < odds.size(); ++output) {
        odds[output] = kClassOutputOffsets[output];
        for (std::size_t unit = 0; unit < hidden.size(); ++unit) {
            odds[output] += kClassOutputWeights[output * kClassHidden + unit] * hidden[unit];
        }
    }
    return odds;
}

// The names' words in lower case, each behind a blank: "NotoSans-SemiCondensed" becomes " noto sans semi condensed".
// The "icon" across a joint of two words is none then.
std::string wordsOfNames(FT_Face face)
{
    const char* postScriptName = FT_Get_Postscript_Name(face);
    const std::string names =
        std::string(face->family_name ? face->family_name : "") + ' ' + (postScriptName ? postScriptName : "");
    const auto is = [&names](std::size_t index, int (*kind)(int)) {
        return index < names.size() && kind(static_cast<unsigned char>(names[index])) != 0;
    };
    std::string words;
    for (std::size_t i = 0; i < names.size(); ++i) {
        const bool begins = !is(i - 1, std::isalpha) || (is(i, std::isupper) && is(i - 1, std::islower)) ||
                            (is(i, std::isupper) && is(i + 1, std::islower));
        words += i == 0 || begins ? " " : "";
        words += static_cast<char>(std::tolower(static_cast<unsigned char>(names[i])));
    }
    return words;
}

bool hasWord(const std::string& words, std::initializer_list<std::string_view> beginnings)
{
    return std::any_of(beginnings.begin(), beginnings.end(), [&words](std::string_view beginning) {
        return words.find(' ' + std::string(beginning)) != std::string::npos;
    });
}

// What tables and names add to the odds. Many fonts leave PANOSE and family class at a default, so neither decides
// alone.
void addStatedEvidence(FT_Face face, const std::string& names, Odds& odds)
{
    const auto* os2 = static_cast<TT_OS2*>(FT_Get_Sfnt_Table(face, FT_SFNT_OS2));
    const int kind = os2 ? os2->panose[0] : 0;
    const int serifs = os2 && kind == 2 ? os2->panose[1] : 0;
    const int family = os2 ? (os2->sFamilyClass >> 8) & 0xFF : 0;
    if ((serifs >= 2 && serifs <= 10) || (family >= 1 && family <= 5) || family == 7) {
        odds[kSerifOutput] += 1;
    }
    if ((serifs >= 11 && serifs <= 15) || family == 8) {
        odds[kSerifOutput] -= 1;
    }
    const bool sans = hasWord(names, {"sans"});
    odds[kSerifOutput] += !sans && hasWord(names, {"serif", "roman", "slab"}) ? 1.5F : 0;
    odds[kSerifOutput] -= sans || hasWord(names, {"grotes", "gothic"}) ? 1.5F : 0;
    odds[kScriptOutput] += kind == 3 || family == 10 ? 2 : 0;
    odds[kScriptOutput] +=
        hasWord(names, {"script", "handwr", "brush", "chancery", "cursive", "calligr", "kaligr", "manuscr"}) ? 3 : 0;
    odds[kSymbolOutput] += kind == 5 || family == 12 ? 3 : 0;
    odds[kSymbolOutput] +=
        hasWord(names, {"symbol", "dingbat", "icon", "ornament", "arrows", "bullets", "glyph"}) ? 3 : 0;
    odds[kDisplayOutput] += kind == 4 || family == 9 ? 1 : 0;
    odds[kDisplayOutput] +=
        hasWord(names, {"outline", "inline", "initial", "stencil", "poster", "decorative", "shadow"}) ? 2 : 0;
    odds[kBlackletterOutput] += hasWord(names, {"fraktur", "blackletter", "textura", "schwabach", "rotunda"}) ? 4 : 0;
}

// Letters of one width. The tables are not asked: they call monospaced what only has wide and half-wide characters, and
// forget it for faces that are.
bool hasFixedPitch(const FaceShape& shape)
{
    std::vector<float> advances;
    for (const LetterShape& letter : shape.letters) {
        if (letter.present) {
            advances.push_back(letter.advance);
        }
    }
    if (advances.size() < 20) {
        return false;
    }
    std::sort(advances.begin(), advances.end());
    const float middle = advances[advances.size() / 2];
    const auto same = std::count_if(advances.begin(), advances.end(),
                                    [middle](float advance) { return std::fabs(advance - middle) < 0.015F * middle; });
    return middle > 0 && same >= static_cast<std::ptrdiff_t>(advances.size()) - 2;
}

bool isSymbolCharacter(FT_ULong character)
{
    return (character >= 0x2190 && character <= 0x2BFF) || (character >= 0xE000 && character <= 0xF8FF) ||
           (character >= 0x1D000 && character <= 0x1D24F) || (character >= 0x1F000 && character <= 0x1FBFF) ||
           character >= 0xF0000;
}

// For faces without letters: what they have instead.
bool coversSymbolsOnly(FT_Face face)
{
    if (!face->charmap || face->charmap->encoding != FT_ENCODING_UNICODE) {
        return true;
    }
    constexpr int most = 1500;
    int symbols = 0;
    int others = 0;
    FT_UInt glyph = 0;
    FT_ULong character = FT_Get_First_Char(face, &glyph);
    for (int i = 0; glyph != 0 && i < most; ++i) {
        const bool nothing =
            character < 0x40 || (character >= 0x7F && character < 0xC0) || (character >= 0x2000 && character < 0x2070);
        symbols += isSymbolCharacter(character) ? 1 : 0;
        others += !nothing && !isSymbolCharacter(character) ? 1 : 0;
        character = FT_Get_Next_Char(face, character, &glyph);
    }
    return symbols > others;
}

enum class SmallLetters
{
    Own,
    Capitals,
    SmallCapitals
};

// Small letters drawn as capitals: letters whose two forms differ in every ordinary face look the same.
SmallLetters smallLetters(const FaceShape& shape, const Features& features)
{
    float distance = 0;
    float heights = 0;
    int pairs = 0;
    for (const char letter : {'a', 'b', 'd', 'e', 'g', 'h', 'm', 'n', 'q', 'r', 't'}) {
        const auto small = static_cast<std::size_t>(featureLetterIndex(letter));
        const std::size_t capital = small + kCaseLetters;
        if (shape.letters[small].present && shape.letters[capital].present) {
            distance += glyphShapeDistance(features[small].data(), features[capital].data());
            heights += shape.letters[small].height / shape.letters[capital].height;
            ++pairs;
        }
    }
    constexpr float alike = 0.45F;
    if (pairs < 6 || distance / static_cast<float>(pairs) > alike) {
        return SmallLetters::Own;
    }
    return heights / static_cast<float>(pairs) < 0.92F ? SmallLetters::SmallCapitals : SmallLetters::Capitals;
}

class Keywords
{
public:
    explicit Keywords(FaceClass& result)
        : m_result(result)
    {
    }

    // The first one is the face's main class.
    void add(Classification classification, const char* keyword)
    {
        m_result.keywords += m_result.keywords.empty() ? "" : ", ";
        m_result.keywords += keyword;
        m_result.styleField =
            m_result.styleField == NoClass ? static_cast<unsigned char>(classification) : m_result.styleField;
    }

private:
    FaceClass& m_result;
};

} // namespace

FaceClass FaceClass::of(FT_Face face, const FaceShape& shape, const Features& features)
{
    FaceClass result;
    Keywords keywords(result);
    const LetterStatistics lower = statistics(features, 0, kCaseLetters);
    const LetterStatistics upper = statistics(features, kCaseLetters, kCaseLetters);
    const bool judgedByShapes = lower.count + upper.count >= kLettersToJudge;
    Odds odds = judgedByShapes ? shapeOdds(features) : Odds{};
    const std::string names = wordsOfNames(face);
    addStatedEvidence(face, names, odds);
    result.symbol = odds[kSymbolOutput] > 1 || (!judgedByShapes && coversSymbolsOnly(face));
    if (result.symbol) {
        keywords.add(Symbol, "Symbol");
        return result;
    }
    result.monospaced = hasFixedPitch(shape);
    const bool blackletter = odds[kBlackletterOutput] > 0;
    const bool handwriting = !blackletter && odds[kScriptOutput] > 0;
    const bool headline = odds[kDisplayOutput] > 0;
    const bool comic = hasWord(names, {"comic"});
    result.text = !blackletter && !handwriting && !headline && !comic;
    // For a face of another script the name decides; tables alone are too often left at a default.
    const float enough = !judgedByShapes ? 1.5F : result.text ? 0.0F : 1.0F;
    result.serif = odds[kSerifOutput] >= enough && !blackletter && !handwriting;
    const bool sans = result.text && !result.serif && odds[kSerifOutput] <= -enough;
    if (blackletter) {
        keywords.add(Blackletter, "Blackletter");
    }
    if (handwriting) {
        keywords.add(Handwriting, "Handwriting");
    }
    if (comic) {
        keywords.add(Comic, "Comic");
    }
    if (headline) {
        keywords.add(Headline, "Headline");
    }
    if (result.text) {
        if (result.monospaced && result.serif) {
            keywords.add(Typewriter, "Typewriter");
        } else if (result.serif) {
            keywords.add(Classic, "Classic");
        } else if (sans) {
            keywords.add(Modern, "Modern");
        }
    }
    if (result.serif) {
        keywords.add(Serif, "Serif");
    }
    if (result.monospaced) {
        keywords.add(Monospace, "Monospace");
    }
    const SmallLetters small = smallLetters(shape, features);
    result.ownSmallLetters = lower.count == kCaseLetters && small == SmallLetters::Own;
    if (small == SmallLetters::SmallCapitals) {
        keywords.add(Smallcaps, "Smallcaps");
    }
    if (lower.count < kCaseLetters || small == SmallLetters::Capitals) {
        keywords.add(UncompleteLower, "UncompleteLower");
    }
    if (upper.count < kCaseLetters) {
        keywords.add(UncompleteUpper, "UncompleteUpper");
    }
    const auto* os2 = static_cast<TT_OS2*>(FT_Get_Sfnt_Table(face, FT_SFNT_OS2));
    const int stated = os2 && os2->panose[0] == 2 ? os2->panose[1] : 0;
    const bool believable = result.serif ? stated >= 2 && stated <= 10 : stated >= 11 && stated <= 15;
    result.serifStyle = static_cast<unsigned char>(believable ? stated : result.serif ? 2 : sans ? 11 : 0);
    return result;
}

} // namespace krv
