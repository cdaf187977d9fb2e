#pragma once

#include <QList>
#include <QMutex>
#include <QObject>
#include <QString>

// The event log: what the service did for the user, one line an event in "<folder>/fontslog", and the time of the last
// scan in "<folder>lastscan". The pipeline logs from the service's thread while the viewer reads on the main thread, so
// every member is under a lock; logChanged() is emitted from the logging thread.
class FMSLog : public QObject
{
    Q_OBJECT

public:
    enum EventType
    {
        ScanStarted = 0,
        ScanFinished = 1,
        ScanAborted = 2,
        ScanPaused = 3,
        ScanResumed = 4,
        FontProcessed = 5,
        FontError = 6,
        ServiceStarted = 7,
        ServiceStopped = 8,
        LicenseObtained = 9,
        LicenseRevoked = 10,
        Message = 11,
        FontRemoved = 12
    };

    struct Entry
    {
        qint64 time = 0; // seconds since the epoch
        int type = 0;
        QString text;
    };

    explicit FMSLog(QObject* parent = nullptr);
    ~FMSLog() override;

    // The registered process-wide log, or null.
    static FMSLog* instance();
    static void setInstance(FMSLog* log);
    // Logs into the registered log, if there is one.
    static void logEvent(int type, const QString& text);

    // Stores the folder (ending with "/") and loads what it holds.
    void setFolder(const QString& folder);
    void log(int type, const QString& text);

    int entryCount() const;
    Entry entry(int index) const;
    QList<Entry> entries() const;
    // Seconds since the epoch; 0 when there was none.
    qint64 lastScanTime() const;

    static QString typeText(int type);

signals:
    void logChanged();

private:
    void load();

    mutable QMutex m_mutex;
    QString m_folder;
    QList<Entry> m_entries;
    bool m_loaded = false;
    qint64 m_lastScan = 0;
};
