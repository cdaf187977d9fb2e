#pragma once

#include <string>
#include <vector>

#include "helpers/findsimilar/SimilarityMethods.h"

namespace kerval::helpers {

// Faces that go with a face. The rules, with their reasons and examples, are in docs/similarity.md:
// - the same family: members of the superfamily by name, then cuts of the same design under other names;
// - contrast: a text face of the other kind (with serifs, without) that agrees in proportion and colour;
// - body: a quiet upright text face for the text under this headline, lighter than it and of another kind;
// - headline: a face clearly stronger than this text, of another kind or a headline face, that agrees in proportion.
class Harmony
{
public:
    explicit Harmony(const FeatureFolder& folder);

    std::vector<Match> matches(SimilarityMethod method, const SimilarityQuery& query) const;

private:
    // What the rules look at in one face.
    struct Traits
    {
        double weight = 0;     // hwe
        double width = 0;      // hwi
        double xHeight = 0;    // hhe
        double slant = 0;      // tangent
        double proportion = 1; // stem against thin strokes
        double present = 0;    // share of the letters asked for
        bool serif = false;
        bool text = false; // neither symbols nor a face for show
        bool typewriter = false;
    };

    Traits traitsOf(int font) const;
    double contrastDeviance(const Traits& base, const Traits& other) const;
    double bodyDeviance(const Traits& base, const Traits& other) const;
    double headlineDeviance(const Traits& base, const Traits& other) const;
    double scoreLack(int font, int use) const;
    std::vector<Match> sameFamily(const SimilarityQuery& query) const;

    const FeatureFolder& m_folder;
};

} // namespace kerval::helpers
