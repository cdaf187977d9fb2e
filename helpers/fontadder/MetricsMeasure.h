#pragma once

#include <string>
#include <vector>

#include <ft2build.h>
#include FT_FREETYPE_H

namespace kerval::adder {

// The two metrics corrections of a face in their text form ("size;cell;ascent"), both empty for a face without
// outlines.
//
// Size: the factor that brings the lower-case letters to one common height, so that faces side by side look equally
// large. Faces of capitals only are matched by their capitals. A face whose ascenders or descenders would then leave
// the row is made smaller until they fit; one without Latin letters keeps its size, if that fits. Cell: the width of
// the widest common character at that size. Ascent: where the baseline lies in a row of the nominal size. It is the
// same for every face: rows of several faces line up only if their baselines do, and the size factor has already made
// the ascenders fit above it.
struct MetricsCorrections
{
    std::string latin; // from letters and digits; that of all characters where there are none
    std::string full;  // from a sample of every block the face reaches

    static MetricsCorrections of(FT_Face face, const std::vector<int>& reachedBlocks);
};

} // namespace kerval::adder
