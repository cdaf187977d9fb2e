#include "helpers/extractfeatures/FolderLock.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "helpers/common/FeatureFolderLayout.h"

namespace kerval::helpers {

FolderLock::~FolderLock()
{
    if (m_file >= 0) {
        close(m_file);
    }
}

bool FolderLock::take(const std::string& folder)
{
    m_file = ::open((folder + "/.lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (m_file < 0) {
        return false;
    }
    int state = 0;
    do {
        state = flock(m_file, LOCK_EX);
    } while (state != 0 && errno == EINTR);
    return state == 0;
}

std::string folderEdition(const std::string& folder)
{
    struct stat info = {};
    const std::string path = folder + "/" + std::string(featurefolder::idsFile);
    if (stat(path.c_str(), &info) != 0) {
        return {};
    }
    return std::to_string(info.st_ino) + ":" + std::to_string(info.st_ctim.tv_sec) + "." +
           std::to_string(info.st_ctim.tv_nsec);
}

} // namespace kerval::helpers
