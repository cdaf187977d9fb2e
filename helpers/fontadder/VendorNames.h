#pragma once

#include <string>

namespace kerval::adder {

// Readable names of a font's maker. The four-letter vendor id decides where it is known. One that names a font editor
// or nobody tells nothing: then the manufacturer's name counts, then a maker named in the notices, in the last resort
// an editor's id.
struct VendorNames
{
    std::string vendor;  // an unknown id yields to the manufacturer's name
    std::string foundry; // an unknown id stands for itself, so that its fonts stay together

    static VendorNames of(const std::string& id, const std::string& manufacturer, const std::string& notices);
};

} // namespace kerval::adder
