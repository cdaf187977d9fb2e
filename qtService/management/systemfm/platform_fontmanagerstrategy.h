#pragma once

#include "qtService/management/systemfm/FontManagerStrategyInterface.h"

#include <memory>

namespace kerval::systemfm {

// The strategy of the operating system this was built for.
std::unique_ptr<FontManagerStrategyInterface> createPlatformStrategy();

} // namespace kerval::systemfm
