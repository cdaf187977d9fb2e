#pragma once

#include <string>
#include <string_view>

namespace kerval::helpers {

// What a PostScript name says about relations: "DejaVuSansMono-Bold" is of the family "DejaVuSansMono" and of the
// superfamily "DejaVu". Both empty when the name says nothing.
struct DesignName
{
    std::string family;
    std::string superfamily;

    static DesignName of(std::string_view postScriptName);
};

} // namespace kerval::helpers
