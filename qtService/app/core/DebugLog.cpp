#include "qtService/app/core/DebugLog.h"

#include <QDebug>
#include <QMutex>
#include <QMutexLocker>

#include <atomic>
#include <cstdio>

namespace krv::debuglog {

namespace {

std::atomic<bool> timestampsOn{false};
std::atomic<bool> echoOn{false};

QMutex linesMutex;
QList<UserLine> capturedLines;
// A service that runs for months must not grow by its own log.
constexpr int maximumCapturedLines = 5000;

void handleMessage(QtMsgType, const QMessageLogContext&, const QString& text)
{
    const QDateTime now = QDateTime::currentDateTime();
    if (text.startsWith(QLatin1String("U_ "))) {
        QMutexLocker locker(&linesMutex);
        capturedLines.append({now, text.mid(3)});
        if (capturedLines.size() > maximumCapturedLines)
            capturedLines.removeFirst();
    }
    if (!echoOn)
        return;
    const QByteArray bytes = formattedLine(text, now, timestampsOn).toUtf8();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stderr);
    std::fflush(stderr);
}

} // namespace

QString formattedLine(const QString& message, const QDateTime& now, bool timestamps)
{
    const bool prefixed = message.size() >= 4 && message.at(1) == QLatin1Char('_') && message.at(3) == QLatin1Char('_');
    QString line;
    if (timestamps)
        line = QLatin1Char('[') + now.toString(QStringLiteral("yy-MM-dd hh:mm:ss.zzz")) + QStringLiteral("] ");
    return line + message.mid(prefixed ? 5 : 0) + QLatin1Char('\n');
}

void setTimestamps(bool on)
{
    timestampsOn = on;
}

void setEchoToStandardError(bool echo)
{
    echoOn = echo;
}

void initialize()
{
    qInstallMessageHandler(handleMessage);
    qDebug().noquote() << "M_0_"
                       << "KRVDBG INITIALIZED! Compile date:" << __TIME__ << __DATE__;
}

QList<UserLine> userLines()
{
    QMutexLocker locker(&linesMutex);
    return capturedLines;
}

} // namespace krv::debuglog
