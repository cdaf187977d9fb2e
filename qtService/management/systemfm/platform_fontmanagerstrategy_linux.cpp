#include "qtService/management/systemfm/FontManagerStrategyFontconfig.h"
#include "qtService/management/systemfm/platform_fontmanagerstrategy.h"

namespace kerval::systemfm {

std::unique_ptr<FontManagerStrategyInterface> createPlatformStrategy()
{
    return std::make_unique<FontManagerStrategyFontconfig>();
}

} // namespace kerval::systemfm
