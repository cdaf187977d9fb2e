#pragma once

#include <string>
#include <string_view>

namespace kerval::adder {

// What the side file "<font file>.onlineinfo" says about a font that came from an online source. The file is a settings
// file as the framework of the main program writes it; anything in it that is not understood counts as not said.
struct OnlineInformation
{
    long long id = 0;
    std::string source;
    long long downloaded = 0; // Unix seconds, 0 when not known
    bool isPurchased = false;

    // A missing or unreadable side file gives the empty information.
    static OnlineInformation besideFile(const std::string& fileName);
    static OnlineInformation parse(std::string_view settings);
};

} // namespace kerval::adder
