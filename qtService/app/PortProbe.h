#pragma once

#include <QHostAddress>
#include <QString>

// Questions a starting service asks of whoever listens on a port. They run a local event loop and are called before
// anything else of the service lives. Main thread.
namespace krv {

struct RunningService
{
    bool answered = false; // false: nobody, or a program that is no Kerval service
    QString userId;
    int version = -1;
};

bool isPortInUse(const QHostAddress& address, int port);

// Asks GET /service of this machine's own address. A listener that has not answered within five seconds, or answers
// anything but the service's JSON, is a foreign program.
RunningService queryRunningService(int port);

} // namespace krv
