#include "helpers/fontadder/AdderOptions.h"

#include "helpers/common/HexPath.h"

#include <charconv>
#include <string_view>

namespace kerval::adder {

namespace {

constexpr int highestFaceIndex = 0x7fff;

bool toFaceIndex(std::string_view text, int& index)
{
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), index);
    return error == std::errc() && end == text.data() + text.size() && index >= 0 && index <= highestFaceIndex;
}

} // namespace

bool AdderOptions::parse(int argumentCount, char** arguments, std::string& error)
{
    for (int i = 1; i < argumentCount; ++i) {
        const std::string_view name = arguments[i];
        if (name == "--useReducedCharset")
            continue;
        if ((name != "-i" && name != "-d" && name != "-g") || i + 1 == argumentCount) {
            error = "usage: krvfontadder.exe -i <file> -d stdout [--useReducedCharset] -g <face>";
            return false;
        }
        const std::string_view value = arguments[++i];
        if (name == "-i") {
            fileName = helpers::decodePath(value).value_or(std::string());
        } else if (name == "-d" && value != "stdout") {
            error = "the result can only be written to stdout";
            return false;
        } else if (name == "-g" && !toFaceIndex(value, faceIndex)) {
            error = "no face index: " + std::string(value);
            return false;
        }
    }
    if (fileName.empty() || fileName.find('\0') != std::string::npos) {
        error = "no file is named";
        return false;
    }
    return true;
}

} // namespace kerval::adder
