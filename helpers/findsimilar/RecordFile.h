#pragma once

#include <cstddef>
#include <string>

namespace kerval::helpers {

// A file of which a few records here and there are read: fetching them costs less than mapping pages for each.
class RecordFile
{
public:
    RecordFile() = default;
    ~RecordFile();
    RecordFile(const RecordFile&) = delete;
    RecordFile& operator=(const RecordFile&) = delete;
    RecordFile(RecordFile&& other) noexcept;
    RecordFile& operator=(RecordFile&& other) noexcept;

    // False when there is no such file, or it does not hold exactly this many bytes.
    bool open(const std::string& path, std::size_t size);
    // False when not all of the bytes came. May be called by several threads at once.
    bool read(std::size_t offset, void* bytes, std::size_t count) const;

private:
    int m_file = -1;
};

} // namespace kerval::helpers
