#pragma once

#include <cstddef>

namespace kerval::helpers {

// Has the file system give an open file room for so many bytes at once, which costs less than giving it out while they
// are written. False when it has no such room; where nothing can be reserved, nothing is.
bool reserveSpace(int file, std::size_t size);

} // namespace kerval::helpers
