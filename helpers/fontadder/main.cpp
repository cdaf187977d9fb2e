#include "helpers/common/FaceReport.h"
#include "helpers/fontadder/AdderOptions.h"
#include "helpers/fontadder/FaceInformation.h"
#include "helpers/fontadder/FontFace.h"
#include "helpers/fontadder/platform.h"
#include "helpers/shape/FaceAnalysis.h"

#include <algorithm>
#include <cstdio>
#include <exception>

using namespace kerval;

namespace {

constexpr int analysed = 0;
constexpr int notAnalysed = 1;
constexpr int notUnderstood = 2;

int fail(int code, const std::string& reason)
{
    std::string line = helpers::harmlessValue(reason);
    std::replace(line.begin(), line.end(), '\n', ' ');
    std::fprintf(stderr, "krvfontadder: %s\n", line.c_str());
    return code;
}

int run(const adder::AdderOptions& options)
{
    std::string error;
    const auto font = adder::FontFace::open(options.fileName, options.faceIndex, error);
    if (!font)
        return fail(notAnalysed, error + ": " + options.fileName);

    // The analysis leaves whatever character map it used last.
    const FT_CharMap map = font->face()->charmap;
    const krv::FaceAnalysis shape = krv::FaceAnalysis::analyse(font->face());
    if (map)
        FT_Set_Charmap(font->face(), map);

    helpers::FaceReport report;
    report.information = adder::faceInformation(*font, shape, options.fileName, options.faceIndex);
    for (std::size_t i = 0; i < shape.features.size(); ++i)
        report.features.emplace_back(static_cast<unsigned char>(krv::kFeatureLetters[i]), shape.features[i]);
    if (!adder::platform::writeToStandardOutput(helpers::writeFaceReport(report)))
        return fail(notAnalysed, "the result cannot be written");
    return analysed;
}

} // namespace

int main(int argc, char** argv)
{
    try {
        adder::AdderOptions options;
        std::string error;
        if (!options.parse(argc, argv, error))
            return fail(notUnderstood, error);
        return run(options);
    } catch (const std::exception&) {
        return fail(notAnalysed, "out of memory");
    }
}
