#include "helpers/extractfeatures/FileSpace.h"

#include <cerrno>

#include <fcntl.h>

namespace kerval::helpers {

bool reserveSpace(int file, std::size_t size)
{
    return size == 0 || fallocate(file, 0, 0, static_cast<off_t>(size)) == 0 || errno != ENOSPC;
}

} // namespace kerval::helpers
