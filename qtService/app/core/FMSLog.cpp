#include "qtService/app/core/FMSLog.h"

#include <QAtomicPointer>
#include <QDateTime>
#include <QFile>
#include <QMutexLocker>
#include <QSaveFile>
#include <QStringList>

#include <cstring>

namespace {

const QString separator = QStringLiteral("||||");
QAtomicPointer<FMSLog> registered;

} // namespace

FMSLog::FMSLog(QObject* parent)
    : QObject(parent)
{
}

FMSLog::~FMSLog()
{
    registered.testAndSetOrdered(this, nullptr);
}

FMSLog* FMSLog::instance()
{
    return registered.loadAcquire();
}

void FMSLog::setInstance(FMSLog* log)
{
    registered.storeRelease(log);
}

void FMSLog::logEvent(int type, const QString& text)
{
    if (FMSLog* log = instance())
        log->log(type, text);
}

void FMSLog::setFolder(const QString& folder)
{
    QMutexLocker locker(&m_mutex);
    m_folder = folder;
    load();
}

void FMSLog::load()
{
    m_entries.clear();
    QFile file(m_folder + QStringLiteral("/fontslog"));
    if (file.open(QIODevice::ReadOnly)) {
        const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
        for (const QString& line : lines) {
            const QStringList parts = line.split(separator);
            if (parts.size() >= 3)
                m_entries.append({parts.at(0).toLongLong(), parts.at(1).toInt(), parts.at(2)});
        }
    }
    m_loaded = true;

    m_lastScan = 0;
    QFile lastScan(m_folder + QStringLiteral("lastscan"));
    if (lastScan.open(QIODevice::ReadOnly)) {
        const QByteArray bytes = lastScan.readAll();
        if (bytes.size() == int(sizeof m_lastScan))
            std::memcpy(&m_lastScan, bytes.constData(), sizeof m_lastScan);
    }
}

void FMSLog::log(int type, const QString& text)
{
    bool changed = false;
    {
        QMutexLocker locker(&m_mutex);
        // An event is one line: a font's name must not be able to write a second one.
        QString line = text;
        line.replace(QLatin1Char('\n'), QLatin1Char(' ')).replace(QLatin1Char('\r'), QLatin1Char(' '));
        const Entry entry{QDateTime::currentSecsSinceEpoch(), type, line};

        // Within one second the file stays as it is: thousands of faulty fonts must not mean thousands of replaced
        // files.
        if ((type == ScanAborted || type == FontError) && m_lastScan != entry.time) {
            m_lastScan = entry.time;
            QSaveFile lastScan(m_folder + QStringLiteral("lastscan"));
            if (lastScan.open(QIODevice::WriteOnly)) {
                lastScan.write(reinterpret_cast<const char*>(&m_lastScan), sizeof m_lastScan);
                lastScan.commit();
            }
        }

        QFile file(m_folder + QStringLiteral("/fontslog"));
        if (file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text)) {
            const QString written =
                QString::number(entry.time) + separator + QString::number(type) + separator + line + QLatin1Char('\n');
            file.write(written.toUtf8());
            file.flush();
            if (m_loaded)
                m_entries.append(entry);
            changed = true;
        }
    }
    if (changed)
        emit logChanged();
}

int FMSLog::entryCount() const
{
    QMutexLocker locker(&m_mutex);
    return m_entries.size();
}

FMSLog::Entry FMSLog::entry(int index) const
{
    QMutexLocker locker(&m_mutex);
    return m_entries.value(index);
}

QList<FMSLog::Entry> FMSLog::entries() const
{
    QMutexLocker locker(&m_mutex);
    return m_entries;
}

qint64 FMSLog::lastScanTime() const
{
    QMutexLocker locker(&m_mutex);
    return m_lastScan;
}

QString FMSLog::typeText(int type)
{
    switch (type) {
    case ScanStarted:
        return tr("Scan started");
    case ScanFinished:
        return tr("Scan finished");
    case ScanAborted:
        return tr("Scan aborted");
    case ScanPaused:
        return tr("Scan paused");
    case ScanResumed:
        return tr("Scan resumed");
    case FontProcessed:
        return tr("Font processed");
    case FontError:
        return tr("Font error");
    case ServiceStarted:
        return tr("Service started");
    case ServiceStopped:
        return tr("Service stopped");
    case LicenseObtained:
        return tr("License obtained");
    case LicenseRevoked:
        return tr("License revoked");
    case Message:
        return tr("Message");
    case FontRemoved:
        return tr("Font removed");
    default:
        return tr("Unknown");
    }
}
