#include "qtService/app/runService.h"

#include "qtService/app/FMService.h"
#include "qtService/app/core/DebugLog.h"
#include "qtService/app/platform_process.h"

#include <QDebug>
#include <QNetworkProxyFactory>
#include <QSaveFile>
#include <QSystemSemaphore>

namespace {

// The semaphore is released even when the file could not be written: the launcher must not wait for ever.
void publishPort(const QString& outfile, int port)
{
    QSaveFile file(outfile);
    if (file.open(QIODevice::WriteOnly)) {
        file.write(QByteArray::number(port));
        file.commit();
    }
    QSystemSemaphore semaphore(outfile, 0, QSystemSemaphore::Open);
    semaphore.release();
}

} // namespace

int runService(int& argc, char** argv, const CommandLineOptions& options)
{
    krv::debuglog::setTimestamps(true);
    krv::debuglog::setEchoToStandardError(options.printStdErr);
    krv::debuglog::initialize();

    const QString displayNotice = krv::platform::prepareDisplay();
    FMService service(argc, argv);
    QNetworkProxyFactory::setUseSystemConfiguration(true);
    if (!displayNotice.isEmpty())
        qDebug().noquote() << QStringLiteral("U_ ") + displayNotice;
    qDebug() << "Library paths:" << QCoreApplication::libraryPaths();

    int port = 0;
    bool started = false;
    if (FMService::checkRequiredFiles(krv::platform::executablePath()))
        started = service.start(&port, !options.dontStartNativeFM);
    else
        qDebug() << "M_1_"
                 << "Some files are missing... exiting...";

    if (!options.outfile.isEmpty()) {
        if (started) {
            while (service.state() != FMService::Ready && service.state() != FMService::Failed)
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            started = service.state() == FMService::Ready;
            port = started ? service.port() : service.otherInstancePort();
        }
        publishPort(options.outfile, port);
    }
    return started ? QCoreApplication::exec() : 1;
}
