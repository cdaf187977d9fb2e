#pragma once

#include <string>
#include <utility>
#include <vector>

namespace krv {
struct FaceAnalysis;
}

namespace kerval::adder {

class FontFace;

// Every item of the catalogue's row for one face, in the form the catalogue reads. Dates are Unix seconds, 0 for never.
std::vector<std::pair<std::string, std::string>> faceInformation(const FontFace& font, const krv::FaceAnalysis& shape,
                                                                 const std::string& fileName, int faceIndex);

} // namespace kerval::adder
