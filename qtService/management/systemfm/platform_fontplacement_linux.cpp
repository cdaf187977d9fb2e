#include "qtService/management/systemfm/platform_fontplacement.h"

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <memory>

namespace kerval::systemfm::placement {

namespace {

class Descriptor
{
public:
    explicit Descriptor(int descriptor)
        : m_descriptor(descriptor)
    {
    }
    ~Descriptor() { close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    operator int() const { return m_descriptor; }
    bool close()
    {
        const int descriptor = std::exchange(m_descriptor, -1);
        return descriptor < 0 || ::close(descriptor) == 0;
    }

private:
    int m_descriptor;
};

bool copyContent(int from, int to)
{
    if (::ioctl(to, FICLONE, from) == 0)
        return true;
    constexpr size_t size = 1 << 18;
    const std::unique_ptr<char[]> buffer(new char[size]);
    for (;;) {
        const ssize_t got = ::read(from, buffer.get(), size);
        if (got == 0)
            return true;
        if (got < 0)
            return false;
        for (ssize_t done = 0; done < got;) {
            const ssize_t put = ::write(to, buffer.get() + done, size_t(got - done));
            if (put <= 0)
                return false;
            done += put;
        }
    }
}

// fontconfig reads no file whose name begins with a dot, so that nobody meets a half-written font.
QByteArray unfinishedName(const QString& target)
{
    const QFileInfo info(target);
    return QFile::encodeName(info.path() + QStringLiteral("/.") + info.fileName() + QStringLiteral(".part"));
}

bool copyFile(const char* source, const char* unfinished)
{
    const Descriptor from(::open(source, O_RDONLY | O_CLOEXEC));
    struct stat status = {};
    if (from < 0 || ::fstat(from, &status) != 0 || !S_ISREG(status.st_mode))
        return false;
    Descriptor to(::open(unfinished, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644));
    if (to < 0 || !copyContent(from, to))
        return false;
    const struct timespec times[2] = {status.st_atim, status.st_mtim};
    return ::futimens(to, times) == 0 && to.close();
}

} // namespace

Method place(const QString& source, const QString& target)
{
    const QByteArray from = QFile::encodeName(source);
    const QByteArray to = QFile::encodeName(target);
    const QByteArray unfinished = unfinishedName(target);
    ::unlink(unfinished.constData());
    struct stat status = {};
    if (::stat(from.constData(), &status) != 0 || !S_ISREG(status.st_mode))
        return Method::None;

    Method method = Method::Link;
    if (::linkat(AT_FDCWD, from.constData(), AT_FDCWD, unfinished.constData(), AT_SYMLINK_FOLLOW) != 0)
        method = copyFile(from.constData(), unfinished.constData()) ? Method::Copy : Method::None;
    if (method != Method::None && std::rename(unfinished.constData(), to.constData()) != 0)
        method = Method::None;
    // Renaming one name of a file onto another name of it does nothing and leaves both.
    ::unlink(unfinished.constData());
    return method;
}

bool isCurrent(const QString& source, const QString& target)
{
    struct stat from = {};
    struct stat to = {};
    if (::stat(QFile::encodeName(source).constData(), &from) != 0 ||
        ::stat(QFile::encodeName(target).constData(), &to) != 0)
        return false;
    if (from.st_dev == to.st_dev && from.st_ino == to.st_ino)
        return true;
    return from.st_size == to.st_size && from.st_mtim.tv_sec == to.st_mtim.tv_sec &&
           from.st_mtim.tv_nsec == to.st_mtim.tv_nsec;
}

bool isOnlyName(const QString& path)
{
    struct stat status = {};
    return ::lstat(QFile::encodeName(path).constData(), &status) == 0 && S_ISREG(status.st_mode) &&
           status.st_nlink == 1;
}

bool makeLink(const QString& source, const QString& link)
{
    return ::symlink(QFile::encodeName(source).constData(), QFile::encodeName(link).constData()) == 0;
}

void touch(const QString& path)
{
    ::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), nullptr, 0);
}

} // namespace kerval::systemfm::placement
