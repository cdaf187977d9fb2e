#pragma once

#include "helpers/common/FeatureBlob.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kerval::helpers {

// What the adder program says about one face: items of text under the names of the catalogue's columns, and the shape
// of each measured character under its code.
struct FaceReport
{
    std::vector<std::pair<std::string, std::string>> information;
    std::vector<std::pair<int, FeatureVector>> features;
};

// A value as it may stand in a report: valid UTF-8 without NUL and control characters (line ends and tabs stay), and
// without "|:", with which every separator begins, so no value can end an item or a section. The bar in front of a
// colon becomes U+00A6, the broken bar.
std::string harmlessValue(std::string_view value);

// The program's whole output: marker, length of the base64 text, bar, base64 text. Every value is made harmless.
std::string writeFaceReport(const FaceReport& report);

// The payload inside a program's output; text before the marker is ignored. Nothing for a missing marker, bar or
// length, for a length of 0, for a text cut short and for one that is not base64.
std::optional<std::string> openEnvelope(std::string_view output);

// Nothing when a character's code is 0 or no number, or its vector is not exactly 244 bytes. Items keep their order, so
// of two items of one name the later counts.
std::optional<FaceReport> parseFaceReport(std::string_view payload);

} // namespace kerval::helpers
