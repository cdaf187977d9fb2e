#include "qtService/management/systemfm/FolderWatch.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QSocketNotifier>

#include <sys/inotify.h>
#include <unistd.h>

namespace kerval::systemfm {

namespace {

// The framework's own watcher tells when a file appears in a folder, but not when it has been written to its end.
// Times and rights that change are no events: fontconfig does not look at a file again for them either.
constexpr quint32 eventMask =
    IN_CREATE | IN_CLOSE_WRITE | IN_MOVED_FROM | IN_MOVED_TO | IN_DELETE | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;
constexpr int debounceTime = 250;
constexpr int longestDelay = 1000;
constexpr int pollTime = 1500;

} // namespace

FolderWatch::FolderWatch(QObject* parent)
    : QObject(parent)
    , m_inotify(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
    , m_debounce(this)
    , m_limit(this)
    , m_poll(this)
{
    m_debounce.setSingleShot(true);
    m_debounce.setInterval(debounceTime);
    m_limit.setSingleShot(true);
    m_limit.setInterval(longestDelay);
    m_poll.setInterval(pollTime);
    connect(&m_debounce, &QTimer::timeout, this, &FolderWatch::announce);
    connect(&m_limit, &QTimer::timeout, this, &FolderWatch::announce);
    connect(&m_poll, &QTimer::timeout, this, &FolderWatch::lookNeeded);
    if (m_inotify >= 0) {
        m_notifier = new QSocketNotifier(m_inotify, QSocketNotifier::Read, this);
        connect(m_notifier, &QSocketNotifier::activated, this, &FolderWatch::readEvents);
    }
}

FolderWatch::~FolderWatch()
{
    delete m_notifier;
    if (m_inotify >= 0)
        ::close(m_inotify);
}

void FolderWatch::setFolders(const QStringList& folders)
{
    QSet<QString> wanted;
    for (QString folder : folders) {
        while (!QFileInfo(folder).isDir() && QFileInfo(folder).path() != folder)
            folder = QFileInfo(folder).path();
        wanted.insert(folder);
    }
    const QStringList present = m_watches.keys();
    for (const QString& folder : present) {
        if (!wanted.contains(folder)) {
            const int watch = m_watches.take(folder);
            // Two paths of one folder share one watch.
            if (m_paths.value(watch) == folder) {
                m_paths.remove(watch);
                ::inotify_rm_watch(m_inotify, watch);
            }
        }
    }
    bool complete = m_inotify >= 0;
    for (const QString& folder : qAsConst(wanted)) {
        if (m_watches.contains(folder) || m_inotify < 0)
            continue;
        const int watch = ::inotify_add_watch(m_inotify, QFile::encodeName(folder).constData(), eventMask);
        if (watch >= 0) {
            // Whatever came between the reader's look into the folder and this moment would go unnoticed.
            trigger();
            m_watches.insert(folder, watch);
            m_paths.insert(watch, folder);
        } else if (errno == ENOSPC || errno == ENOMEM) {
            complete = false;
        }
    }
    if (complete) {
        m_poll.stop();
    } else if (!m_poll.isActive()) {
        qWarning("W_0_ the system cannot watch all font folders; they are looked at regularly instead");
        m_poll.start();
    }
}

void FolderWatch::trigger()
{
    m_debounce.start();
    if (!m_limit.isActive())
        m_limit.start();
}

void FolderWatch::readEvents()
{
    alignas(inotify_event) char buffer[16384];
    bool any = false;
    for (;;) {
        const ssize_t size = ::read(m_inotify, buffer, sizeof buffer);
        if (size <= 0)
            break;
        for (ssize_t at = 0; at < size;) {
            const auto* event = reinterpret_cast<const inotify_event*>(buffer + at);
            if (event->mask & IN_IGNORED)
                m_watches.remove(m_paths.take(event->wd));
            else
                any = true;
            at += ssize_t(sizeof(inotify_event)) + event->len;
        }
    }
    if (any)
        trigger();
}

void FolderWatch::announce()
{
    m_debounce.stop();
    m_limit.stop();
    emit changed();
}

} // namespace kerval::systemfm
