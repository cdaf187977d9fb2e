#pragma once

#include <cstddef>
#include <string>

namespace kerval::helpers {

// A file's contents, read through the page cache without a copy. The contents stay those of the file that was opened
// when another takes its name; whoever changes files in place breaks this, and Kerval's own programs never do.
class MappedFile
{
public:
    MappedFile() = default;
    ~MappedFile();
    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;
    MappedFile(MappedFile&& other) noexcept;
    MappedFile& operator=(MappedFile&& other) noexcept;

    // An empty file opens and has no data. With `whole` all of it is brought in at once, for those who read all of it.
    bool open(const std::string& path, bool whole);
    void close();

    const void* data() const { return m_data; }
    std::size_t size() const { return m_size; }
    // The same for two openings exactly when they saw the same file.
    const std::string& identity() const { return m_identity; }

private:
    void* m_data = nullptr;
    std::size_t m_size = 0;
    std::string m_identity;
};

// The identity of the file that has the name now; empty when there is none.
std::string fileIdentity(const std::string& path);

} // namespace kerval::helpers
