#include "qtService/app/SessionEndWatch.h"

#include <QGuiApplication>
#include <QSessionManager>
#include <QSocketNotifier>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace {

// A signal handler may do next to nothing: it writes one byte, the event loop reads it (the self-pipe).
int pipeEnds[2] = {-1, -1};
constexpr int endingSignals[] = {SIGTERM, SIGHUP, SIGINT};

extern "C" void onSignal(int)
{
    const int saved = errno;
    const char byte = 1;
    const ssize_t ignored = ::write(pipeEnds[1], &byte, 1); // full: a byte that says the same is already there
    (void)ignored;
    errno = saved;
}

} // namespace

class SessionEndWatch::Private
{
public:
    explicit Private(SessionEndWatch* watch)
    {
        if (::pipe2(pipeEnds, O_CLOEXEC | O_NONBLOCK) == 0) {
            notifier = std::make_unique<QSocketNotifier>(pipeEnds[0], QSocketNotifier::Read);
            QObject::connect(notifier.get(), &QSocketNotifier::activated, watch, [watch] {
                char bytes[16];
                while (::read(pipeEnds[0], bytes, sizeof bytes) > 0) {
                }
                emit watch->sessionEnding();
            });
            struct sigaction action = {};
            action.sa_handler = onSignal;
            action.sa_flags = SA_RESTART;
            for (const int number : endingSignals)
                ::sigaction(number, &action, nullptr);
        }
        // The default would close the windows and let the session manager start the program again at the next log-on;
        // the service is started by whoever needs it.
        QObject::connect(qApp, &QGuiApplication::commitDataRequest, watch, [watch](QSessionManager& manager) {
            manager.setRestartHint(QSessionManager::RestartNever);
            emit watch->sessionEnding();
        });
    }

    ~Private()
    {
        for (const int number : endingSignals)
            std::signal(number, SIG_DFL);
        for (int& end : pipeEnds) {
            if (end >= 0)
                ::close(end);
            end = -1;
        }
    }

    std::unique_ptr<QSocketNotifier> notifier;
};

SessionEndWatch::SessionEndWatch(QObject* parent)
    : QObject(parent)
    , m_private(std::make_unique<Private>(this))
{
}

SessionEndWatch::~SessionEndWatch() = default;
