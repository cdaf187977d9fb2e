#pragma once

#include <string>

namespace kerval::adder {

// The command line: -i <file> -d stdout [--useReducedCharset] -g <face>. The file is "0x" and hexadecimal digits, or
// the path itself. The letters and digits that make the reduced character set are the only ones measured, with the
// switch or without.
struct AdderOptions
{
    std::string fileName;
    int faceIndex = 0;

    // False with the reason when the command line is not understood.
    bool parse(int argumentCount, char** arguments, std::string& error);
};

} // namespace kerval::adder
