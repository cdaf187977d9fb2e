#include "helpers/findsimilar/MappedFile.h"

#include <utility>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kerval::helpers {

namespace {

std::string identityOf(const struct stat& info)
{
    return std::to_string(info.st_dev) + ":" + std::to_string(info.st_ino);
}

} // namespace

MappedFile::~MappedFile()
{
    close();
}

MappedFile::MappedFile(MappedFile&& other) noexcept
{
    *this = std::move(other);
}

MappedFile& MappedFile::operator=(MappedFile&& other) noexcept
{
    std::swap(m_data, other.m_data);
    std::swap(m_size, other.m_size);
    std::swap(m_identity, other.m_identity);
    return *this;
}

void MappedFile::close()
{
    if (m_data) {
        munmap(m_data, m_size);
    }
    m_data = nullptr;
    m_size = 0;
    m_identity.clear();
}

bool MappedFile::open(const std::string& path, bool whole)
{
    close();
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK); // a FIFO must not hold us up
    if (file < 0) {
        return false;
    }
    struct stat info = {};
    bool good = fstat(file, &info) == 0 && S_ISREG(info.st_mode);
    if (good && info.st_size > 0) {
        void* data = mmap(nullptr, static_cast<std::size_t>(info.st_size), PROT_READ,
                          MAP_PRIVATE | (whole ? MAP_POPULATE : 0), file, 0);
        good = data != MAP_FAILED;
        if (good) {
            m_data = data;
            m_size = static_cast<std::size_t>(info.st_size);
        }
    }
    if (good) {
        m_identity = identityOf(info);
    }
    ::close(file);
    return good;
}

std::string fileIdentity(const std::string& path)
{
    struct stat info = {};
    return stat(path.c_str(), &info) == 0 ? identityOf(info) : std::string();
}

} // namespace kerval::helpers
