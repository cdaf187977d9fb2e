#pragma once

#include <string>

namespace kerval::helpers {

// Keeps a second extraction out of a folder. The system lets go of the lock when the process dies, however it dies.
class FolderLock
{
public:
    FolderLock() = default;
    ~FolderLock();
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

    // Waits until the lock is free; false when the folder cannot be written.
    bool take(const std::string& folder);

private:
    int m_file = -1;
};

// Tells one set of feature files from the next: something that differs for each "ids.bin" ever put in place. Empty when
// there is none.
std::string folderEdition(const std::string& folder);

} // namespace kerval::helpers
