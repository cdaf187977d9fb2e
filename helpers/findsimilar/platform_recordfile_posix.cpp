#include "helpers/findsimilar/RecordFile.h"

#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kerval::helpers {

RecordFile::~RecordFile()
{
    if (m_file >= 0) {
        close(m_file);
    }
}

RecordFile::RecordFile(RecordFile&& other) noexcept
{
    *this = std::move(other);
}

RecordFile& RecordFile::operator=(RecordFile&& other) noexcept
{
    std::swap(m_file, other.m_file);
    return *this;
}

bool RecordFile::open(const std::string& path, std::size_t size)
{
    *this = RecordFile();
    m_file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK); // a FIFO must not hold us up
    struct stat info = {};
    return m_file >= 0 && fstat(m_file, &info) == 0 && S_ISREG(info.st_mode) &&
           static_cast<std::size_t>(info.st_size) == size;
}

bool RecordFile::read(std::size_t offset, void* bytes, std::size_t count) const
{
    return m_file >= 0 && pread(m_file, bytes, count, static_cast<off_t>(offset)) == static_cast<ssize_t>(count);
}

} // namespace kerval::helpers
