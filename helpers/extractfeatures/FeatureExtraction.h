#pragma once

#include <string>

#include "helpers/extractfeatures/ExtractionOptions.h"

namespace kerval::helpers {

// Turns the catalogue's feature rows into the folder of feature files. Of several extractions asked for at once one
// works and the others wait for its result. A catalogue that changes meanwhile is read again, so that a set never
// leaves out fonts inserted before it appeared.
bool extractFeatures(const ExtractionOptions& options, std::string& problem);

} // namespace kerval::helpers
