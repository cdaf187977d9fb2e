#include "qtService/app/Launcher.h"

#include "qtService/app/FMStarter.h"
#include "qtService/app/platform_process.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSystemSemaphore>

#include <cstdio>
#include <memory>

namespace {

// The service gets none of the launcher's descriptors: a plug-in reads the launcher's output through a pipe, and the
// pipe must end with the launcher.
bool startService(const QString& portFile, bool openWindow, qint64* processId)
{
    QProcess service;
    service.setProgram(krv::platform::executablePath());
    QStringList arguments{QStringLiteral("--outfile"), portFile};
    if (!openWindow)
        arguments.append(QStringLiteral("--dontStartNativeFM"));
    service.setArguments(arguments);
    service.setStandardInputFile(QProcess::nullDevice());
    service.setStandardOutputFile(QProcess::nullDevice());
    service.setStandardErrorFile(QProcess::nullDevice());
    krv::platform::keepDescriptorsFromChildren();
    return service.startDetached(processId);
}

int takePort(const QString& portFile)
{
    QFile file(portFile);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const int port = file.readAll().toInt();
    file.close();
    file.remove();
    return port;
}

} // namespace

int runLauncher(int& argc, char** argv, const CommandLineOptions& options)
{
    const QString portFile = QDir::toNativeSeparators(
        QStringLiteral("%1/%2.port").arg(krv::platform::rendezvousFolder()).arg(QCoreApplication::applicationPid()));
    QFile::remove(portFile); // a left-over of an earlier process with this number

    int port = 0;
    {
        QSystemSemaphore published(portFile, 1, QSystemSemaphore::Create);
        published.acquire();
        qint64 serviceId = 0;
        if (startService(portFile, !options.dontStartNativeFM, &serviceId)) {
            // A service that dies before it has published anything must not leave the launcher waiting for ever.
            krv::platform::ProcessEndWatch watch(serviceId, [&portFile] {
                QSystemSemaphore semaphore(portFile, 0, QSystemSemaphore::Open);
                semaphore.release();
            });
            published.acquire();
            port = takePort(portFile);
        } else {
            std::fprintf(stderr, "The service could not be started\n");
        }
        published.release();
    }

    if (!options.dontStartNativeFM) {
        QCoreApplication application(argc, argv);
        FMStarter starter;
        starter.launchFontManager(port);
        QCoreApplication::exec();
    }
    std::printf("Port: %d\n ", port);
    std::fflush(stdout);
    return 0;
}
