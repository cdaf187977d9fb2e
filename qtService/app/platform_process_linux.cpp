#include "qtService/app/platform_process.h"

#include <QDir>
#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

namespace krv::platform {

QString executablePath()
{
    return QFile::symLinkTarget(QStringLiteral("/proc/self/exe"));
}

void keepDescriptorsFromChildren()
{
    const QStringList descriptors = QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::Files | QDir::System);
    for (const QString& name : descriptors) {
        const int descriptor = name.toInt();
        if (descriptor > 2)
            ::fcntl(descriptor, F_SETFD, FD_CLOEXEC);
    }
}

struct ProcessEndWatch::Private
{
    int process = -1;
    int cancelled = -1;
    std::thread thread;
};

ProcessEndWatch::ProcessEndWatch(qint64 processId, std::function<void()> ended)
    : m_private(new Private)
{
    // A descriptor of the process, not its number: numbers are reused, and a dead process keeps its own until its
    // parent has asked for it.
    m_private->process = int(::syscall(SYS_pidfd_open, pid_t(processId), 0));
    if (m_private->process < 0 && errno != ESRCH)
        return; // a kernel without such descriptors: nothing is watched
    m_private->cancelled = ::eventfd(0, EFD_CLOEXEC);
    m_private->thread = std::thread([this, ended = std::move(ended)] {
        if (m_private->process >= 0) {
            pollfd waiting[] = {{m_private->process, POLLIN, 0}, {m_private->cancelled, POLLIN, 0}};
            while (::poll(waiting, 2, -1) < 0 && errno == EINTR) {
            }
            if (waiting[1].revents)
                return;
        }
        ended();
    });
}

ProcessEndWatch::~ProcessEndWatch()
{
    if (m_private->thread.joinable()) {
        const quint64 one = 1;
        if (::write(m_private->cancelled, &one, sizeof one) == sizeof one)
            m_private->thread.join();
        else
            m_private->thread.detach();
    }
    if (m_private->process >= 0)
        ::close(m_private->process);
    if (m_private->cancelled >= 0)
        ::close(m_private->cancelled);
    delete m_private;
}

QString rendezvousFolder()
{
    const QString runtime = QFile::decodeName(qgetenv("XDG_RUNTIME_DIR"));
    if (QDir::isAbsolutePath(runtime) && QDir(runtime).exists())
        return QDir::cleanPath(runtime);
    return QDir::tempPath();
}

QString prepareDisplay()
{
    if (!qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        return QString();
    const bool hasX = !qEnvironmentVariableIsEmpty("DISPLAY");
    const bool hasWayland = !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    if (!hasX && !hasWayland) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        return QStringLiteral("No display: running without windows, the HTTP interface is served all the same");
    }
    // A display that no longer answers must not end the service.
    if (!hasWayland)
        qputenv("QT_QPA_PLATFORM", "xcb;offscreen");
    return QString();
}

} // namespace krv::platform
