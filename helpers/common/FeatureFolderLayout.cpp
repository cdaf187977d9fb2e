#include "helpers/common/FeatureFolderLayout.h"

namespace kerval::helpers::featurefolder {

std::string characterFile(unsigned char code)
{
    return "features_" + std::to_string(static_cast<unsigned>(code)) + ".bin";
}

} // namespace kerval::helpers::featurefolder
