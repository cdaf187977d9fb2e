#include "helpers/fontadder/platform.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <ctime>

#include <dirent.h>
#include <fcntl.h>
#include <iconv.h>
#include <strings.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kerval::adder::platform {

namespace {

constexpr rlim_t processorSeconds = 5;
constexpr rlim_t workingMemory = 512u << 20;
constexpr int boundExceeded = 3;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool underSanitizer = true;
#else
constexpr bool underSanitizer = false;
#endif

void lowerLimit(int resource, rlim_t value)
{
    rlimit limit{};
    if (getrlimit(resource, &limit) != 0)
        return;
    // Never above what whoever started this program has set.
    limit.rlim_cur = std::min(limit.rlim_cur, value);
    setrlimit(resource, &limit);
}

template <std::size_t N>
void say(const char (&line)[N])
{
    [[maybe_unused]] const auto written = write(STDERR_FILENO, line, N - 1);
}

void onFault(int signal)
{
    if (signal == SIGXCPU)
        say("krvfontadder: the face takes too long to analyse\n");
    else
        say("krvfontadder: the file broke the font reader\n");
    _exit(boundExceeded);
}

class Descriptor
{
public:
    explicit Descriptor(int fd)
        : m_fd(fd)
    {
    }
    ~Descriptor()
    {
        if (m_fd >= 0)
            close(m_fd);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int get() const { return m_fd; }

private:
    int m_fd;
};

} // namespace

void limitResources(std::size_t fileSize)
{
    if (underSanitizer)
        return;
    lowerLimit(RLIMIT_CORE, 0);
    lowerLimit(RLIMIT_CPU, processorSeconds);
    lowerLimit(RLIMIT_AS, workingMemory + 2 * static_cast<rlim_t>(fileSize));

    // Faults are caught on a stack of their own, because an exhausted stack is one of them.
    static char stack[16384];
    stack_t alternate{};
    alternate.ss_sp = stack;
    alternate.ss_size = sizeof stack;
    sigaltstack(&alternate, nullptr);
    struct sigaction action
    {
    };
    action.sa_handler = onFault;
    action.sa_flags = static_cast<int>(SA_ONSTACK | SA_RESETHAND);
    for (const int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGXCPU})
        sigaction(signal, &action, nullptr);
    signal(SIGPIPE, SIG_IGN);
}

bool FileContent::read(const std::string& path, std::size_t limit, std::string& error)
{
    // A FIFO must not hold the program up before it is seen to be none of our business.
    const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status
    {
    };
    if (file.get() < 0 || fstat(file.get(), &status) != 0) {
        error = std::strerror(errno);
        return false;
    }
    if (!S_ISREG(status.st_mode)) {
        error = "not a regular file";
        return false;
    }
    const auto size = static_cast<std::size_t>(status.st_size);
    if (size > limit) {
        error = "the file is too large for a font";
        return false;
    }
    // Not a string or vector, which would fill the memory before the file does.
    m_bytes.reset(new char[size]);
    m_size = 0;
    while (m_size < size) {
        const ssize_t got = ::read(file.get(), m_bytes.get() + m_size, size - m_size);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0) {
            error = std::strerror(errno);
            m_size = 0;
            return false;
        }
        if (got == 0)
            break;
        m_size += static_cast<std::size_t>(got);
    }
    return true;
}

std::optional<std::string> companionFile(const std::string& path, std::string_view suffix)
{
    const std::size_t nameStart = path.rfind('/') == std::string::npos ? 0 : path.rfind('/') + 1;
    const std::size_t dot = path.rfind('.');
    if (dot == std::string::npos || dot < nameStart)
        return std::nullopt;
    const std::string stem = path.substr(0, dot + 1);
    const std::string usual = stem + std::string(suffix);
    if (access(usual.c_str(), R_OK) == 0)
        return usual;

    const std::string folder = nameStart == 0 ? "." : path.substr(0, nameStart);
    DIR* listing = opendir(folder.c_str());
    if (!listing)
        return std::nullopt;
    std::optional<std::string> found;
    const std::string wanted = usual.substr(nameStart);
    while (const dirent* entry = readdir(listing)) {
        const std::string_view name = entry->d_name;
        if (name.size() == wanted.size() && name.substr(0, dot + 1 - nameStart) == stem.substr(nameStart) &&
            strcasecmp(entry->d_name + (dot + 1 - nameStart), wanted.c_str() + (dot + 1 - nameStart)) == 0) {
            found = path.substr(0, nameStart) + entry->d_name;
            break;
        }
    }
    closedir(listing);
    return found;
}

bool writeToStandardOutput(std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t written = write(STDOUT_FILENO, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

std::optional<std::string> decodeText(const char* encoding, std::string_view bytes)
{
    const iconv_t converter = iconv_open("UTF-8", encoding);
    if (converter == reinterpret_cast<iconv_t>(-1))
        return std::nullopt;
    std::string text(bytes.size() * 4, '\0');
    std::string source(bytes);
    char* in = source.data();
    char* out = text.data();
    std::size_t inLeft = source.size();
    std::size_t outLeft = text.size();
    const bool converted = iconv(converter, &in, &inLeft, &out, &outLeft) != static_cast<std::size_t>(-1);
    iconv_close(converter);
    if (!converted || inLeft != 0)
        return std::nullopt;
    text.resize(text.size() - outLeft);
    return text;
}

long long unixTimeOfLocal(int year, int month, int day, int secondsOfDay)
{
    std::tm time{};
    time.tm_year = year - 1900;
    time.tm_mon = month - 1;
    time.tm_mday = day;
    time.tm_sec = secondsOfDay;
    time.tm_isdst = -1;
    return std::mktime(&time);
}

} // namespace kerval::adder::platform
