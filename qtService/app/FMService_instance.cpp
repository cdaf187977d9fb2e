// One service for each user, and the port that it listens on.
#include "qtService/app/FMService.h"
#include "qtService/app/PortProbe.h"
#include "qtService/app/core/SettingsFolders.h"
#include "rest/Server.h"

#include <QDebug>
#include <QElapsedTimer>
#include <QLockFile>
#include <QSettings>

namespace {

constexpr int firstPort = 33000;
constexpr int lastPort = 65535;
// How long a start waits for the port of an instance that is itself still starting.
constexpr int otherInstancePatienceMs = 20000;
// A lock file is filled a moment after it is made.
constexpr int unreadableLockPatienceMs = 1000;

// The stored port, or 0 when there is none that a listener could have.
int storedPort()
{
    const QSettings settings(krv::userSettingsFolder() + QStringLiteral("port.ini"), QSettings::IniFormat);
    bool isNumber = false;
    const int port = settings.value(QStringLiteral("Port"), 0).toInt(&isNumber);
    return isNumber && port >= 1 && port <= lastPort ? port : 0;
}

void storePort(int port)
{
    QSettings settings(krv::userSettingsFolder() + QStringLiteral("port.ini"), QSettings::IniFormat);
    settings.setValue(QStringLiteral("Port"), port);
    settings.sync();
}

bool isPortTaken(int port)
{
    return krv::isPortInUse(QHostAddress::LocalHost, port);
}

} // namespace

// Two services must never write the same databases, not even for the moment between choosing a port and listening on
// it. So the first holds a lock file, and a later one waits until the first answers on its port.
bool FMService::acquireInstanceLock(int* runningPort)
{
    m_instanceLock = std::make_unique<QLockFile>(krv::userSettingsFolder() + QStringLiteral("service.lock"));
    m_instanceLock->setStaleLockTime(0); // stale only when its process is gone
    QElapsedTimer waiting;
    waiting.start();
    do {
        if (m_instanceLock->tryLock(100))
            return true;
        const int port = storedPort();
        if (m_instanceLock->error() != QLockFile::LockFailedError)
            return true; // a file system without locks: the port alone decides
        if (waiting.elapsed() > unreadableLockPatienceMs)
            dropUnreadableLock();
        if (port != 0 && isPortTaken(port) && isOtherInstance(port, "), quiting...")) {
            *runningPort = port;
            return false;
        }
    } while (waiting.elapsed() < otherInstancePatienceMs);
    qCritical() << "E_0_"
                << "ANOTHER INSTANCE OF FMSERVICE IS ALREADY RUNNING but does not answer, quiting...";
    return false;
}

// A machine that lost its power may have kept the lock file without what was written into it, which names no process
// that could be found dead. The file of a living one is held by its process and stays.
void FMService::dropUnreadableLock()
{
    qint64 process = 0;
    QString host;
    QString program;
    if (!m_instanceLock->getLockInfo(&process, &host, &program))
        m_instanceLock->removeStaleLockFile();
}

// An older version that was not stopped for an update is told in the log: a message would vanish with this process.
bool FMService::isOtherInstance(int port, const char* noticeEnd) const
{
    const krv::RunningService other = krv::queryRunningService(port);
    if (other.userId != m_userId)
        return false;
    if (other.version != versionNumber())
        qCritical().noquote().nospace()
            << "E_0_ Another version of the Kerval Service is already running.\nPlease close it and try again\n"
            << "Received version:" << other.version << "\nUsername:" << other.userId << '(' << m_userId << ')';
    qCritical() << "E_0_"
                << "ANOTHER INSTANCE OF FMSERVICE IS ALREADY RUNNING( port" << port << noticeEnd;
    return true;
}

bool FMService::choosePort(int* port)
{
    const int stored = storedPort();
    if (stored != 0 && !isPortTaken(stored)) {
        m_chosenPort = stored;
    } else if (stored != 0 && isOtherInstance(stored, "), quiting...")) {
        *port = stored;
        return false;
    } else {
        m_chosenPort = findPort(firstPort, stored, port);
    }
    if (m_chosenPort == 0)
        return false;
    storePort(m_chosenPort);
    *port = m_chosenPort;
    return true;
}

int FMService::findPort(int first, int foreignPort, int* runningPort)
{
    for (int port = first; port <= lastPort; ++port) {
        if (!isPortTaken(port))
            return port;
        if (port != foreignPort && isOtherInstance(port, " case 2), quiting...")) {
            *runningPort = port;
            return 0;
        }
    }
    qCritical() << "E_0_"
                << "no free port from" << first << "upward, quiting...";
    return 0;
}

// A port on which nobody answers may still be no port to listen on: a program has taken it meanwhile (another user's
// service that starts at the same moment, say) or holds it on another address of this machine, or it is kept for the
// administrator. Then the next one is tried.
bool FMService::listen()
{
    constexpr int attempts = 20;
    int port = m_chosenPort;
    int next = firstPort;
    for (int attempt = 0; attempt < attempts && port != 0; ++attempt) {
        if (m_server->listen(quint16(port))) {
            storePort(port);
            qDebug().noquote() << QStringLiteral("U_ Port: %1").arg(port);
            nameRecognitionService();
            return true;
        }
        qWarning() << "W_1_"
                   << "port" << port << "cannot be listened on";
        port = findPort(next, port, &m_otherInstancePort);
        next = port + 1;
    }
    qCritical() << "E_0_"
                << "SERVER FAILED TO BIND LISTENER TO THE PORT, quiting...";
    return false;
}
