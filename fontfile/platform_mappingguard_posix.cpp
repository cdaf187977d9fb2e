#include "fontfile/platform_mappingguard.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>

#include <sys/mman.h>
#include <unistd.h>

// A guarded mapping. Ranges are used again and never freed, because a signal handler may walk them at any moment.
struct MappingGuard::Range
{
    std::atomic<bool> isTaken{false};
    std::atomic<std::uintptr_t> begin{0}; // 0: nothing is guarded
    std::atomic<std::uintptr_t> end{0};
    Range* next = nullptr;
};

struct MappingGuardHandler
{
    using Range = MappingGuard::Range;

    static inline std::atomic<Range*> ranges{nullptr};
    static inline struct sigaction previous = {};
    static inline std::uintptr_t pageSize = 0;

    // Only the faulting thread is here, in the midst of reading a page of the range.
    static bool replaceLostPages(std::uintptr_t address)
    {
        for (const Range* range = ranges.load(); range; range = range->next) {
            const std::uintptr_t begin = range->begin.load();
            const std::uintptr_t end = range->end.load();
            // Read again, lest the end be that of another mapping, guarded here in the meantime.
            if (begin == 0 || address < begin || address >= end || range->begin.load() != begin)
                continue;
            const std::uintptr_t page = address - address % pageSize;
            return mmap(reinterpret_cast<void*>(page), end - page, PROT_READ, MAP_FIXED | MAP_PRIVATE | MAP_ANONYMOUS,
                        -1, 0) != MAP_FAILED;
        }
        return false;
    }

    static void onBusError(int, siginfo_t* info, void*)
    {
        const int error = errno;
        // Of nobody here: the read is tried again, and fails under whoever was asked before.
        if (!replaceLostPages(reinterpret_cast<std::uintptr_t>(info->si_addr)))
            sigaction(SIGBUS, &previous, nullptr);
        errno = error;
    }

    static bool install()
    {
        pageSize = std::uintptr_t(sysconf(_SC_PAGESIZE));
        struct sigaction action = {};
        action.sa_sigaction = onBusError;
        action.sa_flags = SA_SIGINFO | SA_ONSTACK;
        return sigaction(SIGBUS, &action, &previous) == 0;
    }

    static Range* take()
    {
        for (Range* range = ranges.load(); range; range = range->next) {
            if (!range->isTaken.exchange(true))
                return range;
        }
        auto* const range = new Range;
        range->isTaken = true;
        range->next = ranges.load();
        while (!ranges.compare_exchange_weak(range->next, range)) {
        }
        return range;
    }
};

MappingGuard::MappingGuard(const uchar* data, qint64 size)
{
    static const bool installed = MappingGuardHandler::install();
    Q_UNUSED(installed)
    m_range = MappingGuardHandler::take();
    m_range->end = reinterpret_cast<std::uintptr_t>(data) + std::uintptr_t(size);
    m_range->begin = reinterpret_cast<std::uintptr_t>(data);
}

MappingGuard::~MappingGuard()
{
    m_range->begin = 0;
    m_range->isTaken = false;
}
