#include "helpers/findsimilar/Harmony.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "helpers/findsimilar/DesignName.h"
#include "helpers/findsimilar/DesignSpread.h"
#include "helpers/shape/GlyphFeatures.h"

namespace kerval::helpers {

namespace {

// What a face without any merit for the use costs: as much as half a step in weight and in width together.
constexpr double kScoreWeight = 3;
constexpr double kFurtherCut = 1.0;
constexpr double kSuperfamilyBonus = 0.8;
constexpr double kSameKind = 2.5;    // what a pairing of two faces of one kind costs
constexpr double kMadeForShow = 1.5; // most such faces fit one subject, and the measures do not know which
constexpr double kBookWeight = 135;  // hwe of an ordinary text face
// A face this near is a cut of the same design whatever it is called.
constexpr float kSameDesign = 0.12F;

double logDistance(double one, double other, double unit)
{
    return one > 0 && other > 0 ? std::fabs(std::log(one / other)) / unit : 1;
}

} // namespace

Harmony::Harmony(const FeatureFolder& folder)
    : m_folder(folder)
{
}

Harmony::Traits Harmony::traitsOf(int font) const
{
    Traits traits;
    traits.weight = m_folder.hwe(font);
    traits.width = m_folder.hwi(font);
    traits.xHeight = m_folder.hhe(font);
    traits.serif = m_folder.isSerif(font);
    const std::string_view kind = m_folder.className(font);
    traits.typewriter = kind == "typewriter";
    traits.text = kind == "classic" || kind == "modern" || traits.typewriter;
    int present = 0;
    for (int letter = 0; letter < m_folder.letterCount(); ++letter) {
        const float* values = m_folder.vector(letter, font);
        if (values[krv::kHeightValue] > 0) {
            ++present;
            traits.slant += values[krv::kSlantValue];
            traits.proportion += values[krv::kStrokeContrastValue];
        }
    }
    if (present > 0) {
        traits.slant /= present;
        traits.proportion /= present;
        traits.present = static_cast<double>(present) / m_folder.letterCount();
    }
    return traits;
}

double Harmony::scoreLack(int font, int use) const
{
    const std::int32_t* scores = m_folder.scores(font);
    return scores ? 1 - std::clamp(scores[use] / 1000.0, 0.0, 1.0) : 0.5;
}

double Harmony::contrastDeviance(const Traits& base, const Traits& other) const
{
    const double kind = base.text && base.serif == other.serif ? kSameKind : 0;
    return kind + logDistance(base.xHeight, other.xHeight, 0.10) + logDistance(base.width, other.width, 0.15) +
           logDistance(base.weight, other.weight, 0.30) + 16 * std::fabs(base.slant - other.slant) +
           (other.typewriter != base.typewriter ? 1 : 0);
}

double Harmony::bodyDeviance(const Traits& base, const Traits& other) const
{
    const double kind = base.text && base.serif == other.serif ? 0.4 * kSameKind : 0;
    // A headline in a text weight needs no lighter text; a bold one that is not lighter would compete with it.
    const double competing = std::max(0.0, other.weight / std::max(base.weight, 1.0) - 1) * 2;
    return kind + competing + logDistance(kBookWeight, other.weight, 0.25) +
           0.5 * logDistance(base.xHeight, other.xHeight, 0.10) + 0.5 * logDistance(base.width, other.width, 0.15) +
           110 * std::fabs(other.slant) + (other.typewriter ? 1.5 : 0);
}

double Harmony::headlineDeviance(const Traits& base, const Traits& other) const
{
    const double kind = !other.text ? kMadeForShow : base.serif == other.serif ? 0.4 * kSameKind : 0;
    // Twice to four times the text's weight reads as a headline, faces made for show by their form at any weight.
    const double strength = std::log(std::max(other.weight, 1.0) / std::max(base.weight, 1.0));
    const double weak = std::max(0.0, 0.6 - strength) / 0.25;
    const double heavy = std::max(0.0, strength - 1.5) / 0.25;
    return kind + (other.text ? 1.0 : 0.4) * weak + heavy + 0.5 * logDistance(base.xHeight, other.xHeight, 0.10) +
           0.5 * logDistance(base.width, other.width, 0.20) + 10 * std::fabs(other.slant) +
           (other.typewriter ? 1.5 : 0);
}

std::vector<Match> Harmony::sameFamily(const SimilarityQuery& query) const
{
    const DesignName base = DesignName::of(m_folder.postScriptName(query.font));
    const std::vector<float> distances = FaceComparison(m_folder).distancesFrom(query.font, query.marked);
    std::vector<Match> matches;
    for (int font = 0; font < m_folder.count(); ++font) {
        if (font == query.font || (!query.marked.empty() && !query.marked[static_cast<std::size_t>(font)])) {
            continue;
        }
        const float distance = distances[static_cast<std::size_t>(font)];
        const double looks = std::isfinite(distance) ? distance / (1 + distance) : 1; // 0 to 1
        const DesignName name = DesignName::of(m_folder.postScriptName(font));
        if (!base.family.empty() && name.family == base.family) {
            matches.push_back({font, looks});
        } else if (!base.superfamily.empty() && name.superfamily == base.superfamily) {
            matches.push_back({font, 1 + looks});
        } else if (distance < kSameDesign) {
            matches.push_back({font, 2 + looks});
        }
    }
    return bestMatches(std::move(matches), query.limit);
}

std::vector<Match> Harmony::matches(SimilarityMethod method, const SimilarityQuery& query) const
{
    if (method == SimilarityMethod::SameFamily) {
        return sameFamily(query);
    }
    const Traits base = traitsOf(query.font);
    const DesignName name = DesignName::of(m_folder.postScriptName(query.font));
    std::vector<Match> matches;
    for (int font = 0; font < m_folder.count(); ++font) {
        if (font == query.font || (!query.marked.empty() && !query.marked[static_cast<std::size_t>(font)])) {
            continue;
        }
        const Traits other = traitsOf(font);
        const bool suits =
            method == SimilarityMethod::Headline ? other.text || m_folder.className(font) == "headline" : other.text;
        if (!suits || other.present < 1) {
            continue;
        }
        double deviance = method == SimilarityMethod::Contrast ? contrastDeviance(base, other)
                          : method == SimilarityMethod::Body   ? bodyDeviance(base, other)
                                                               : headlineDeviance(base, other);
        deviance += kScoreWeight * scoreLack(font, method == SimilarityMethod::Headline ? 2 : 1);
        // Made for each other by one designer.
        if (!name.superfamily.empty() && base.serif != other.serif &&
            DesignName::of(m_folder.postScriptName(font)).superfamily == name.superfamily) {
            deviance -= kSuperfamilyBonus;
        }
        matches.push_back({font, std::max(deviance, 0.0)});
    }
    return spreadOverDesigns(m_folder, std::move(matches), query.limit, kFurtherCut);
}

} // namespace kerval::helpers
