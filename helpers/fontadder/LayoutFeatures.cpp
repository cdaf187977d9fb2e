#include "helpers/fontadder/LayoutFeatures.h"

#include "helpers/fontadder/FontFace.h"

#include <initializer_list>

namespace kerval::adder {

namespace {

constexpr std::size_t maximalTableSize = 16u << 20;
constexpr std::size_t featureListOffset = 6;
constexpr std::size_t featureRecordSize = 6;

} // namespace

LayoutFeatures::LayoutFeatures(FT_Face face)
{
    const std::string bytes = FontFace::table(face, FT_MAKE_TAG('G', 'S', 'U', 'B'), maximalTableSize);
    const BigEndianReader table(bytes);
    const int listOffset = table.u16(featureListOffset);
    if (listOffset == 0)
        return;
    const BigEndianReader list = table.from(static_cast<std::size_t>(listOffset));
    const int count = list.u16(0);
    for (int i = 0; i < count; ++i) {
        const std::size_t at = 2 + static_cast<std::size_t>(i) * featureRecordSize;
        const BigEndianReader feature = list.from(static_cast<std::size_t>(list.u16(at + 4)));
        if (feature.u16(2) > 0)
            m_tags.insert(list.u32(at));
    }
}

bool LayoutFeatures::hasLigatures() const
{
    for (const FT_ULong tag :
         {FT_MAKE_TAG('l', 'i', 'g', 'a'), FT_MAKE_TAG('c', 'l', 'i', 'g'), FT_MAKE_TAG('d', 'l', 'i', 'g'),
          FT_MAKE_TAG('h', 'l', 'i', 'g'), FT_MAKE_TAG('r', 'l', 'i', 'g')})
        if (m_tags.count(static_cast<std::uint32_t>(tag)) > 0)
            return true;
    return false;
}

bool LayoutFeatures::hasSmallCapitals() const
{
    return m_tags.count(static_cast<std::uint32_t>(FT_MAKE_TAG('s', 'm', 'c', 'p'))) > 0;
}

} // namespace kerval::adder
