#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

// What the adder program asks of the operating system.
namespace kerval::adder::platform {

// Bounds what one face may cost, so that a crafted file ends this program and nothing else: processor seconds, memory
// (beside the file itself) and no core dump. A fault or an exceeded bound then ends the program with one line on
// standard error and exit code 3. Does nothing under a sanitizer, which has its own ways.
void limitResources(std::size_t fileSize);

// The whole of a file, read once: a private copy that nobody changes under the parser.
class FileContent
{
public:
    // False with the reason when the path is no regular file, cannot be read or is longer than the limit.
    bool read(const std::string& path, std::size_t limit, std::string& error);

    std::string_view bytes() const { return {m_bytes.get(), m_size}; }
    bool isEmpty() const { return m_size == 0; }

private:
    std::unique_ptr<char[]> m_bytes;
    std::size_t m_size = 0;
};

// The readable file beside another one that has the same name but for this suffix, in whatever case it is written.
std::optional<std::string> companionFile(const std::string& path, std::string_view suffix);

// False when standard output did not take everything.
bool writeToStandardOutput(std::string_view bytes);

// Text in a legacy encoding (as "SJIS", "BIG5") as UTF-8; nothing when it is not text of that encoding.
std::optional<std::string> decodeText(const char* encoding, std::string_view bytes);

// Local time to Unix seconds; -1 when there is no such time.
long long unixTimeOfLocal(int year, int month, int day, int secondsOfDay);

} // namespace kerval::adder::platform
