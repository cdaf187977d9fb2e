#pragma once

#include <cstdint>
#include <set>

#include <ft2build.h>
#include FT_FREETYPE_H

namespace kerval::adder {

// The tags of the substitution features ("GSUB") that do something: those with at least one lookup.
class LayoutFeatures
{
public:
    explicit LayoutFeatures(FT_Face face);

    bool hasLigatures() const;
    bool hasSmallCapitals() const;

private:
    std::set<std::uint32_t> m_tags;
};

} // namespace kerval::adder
