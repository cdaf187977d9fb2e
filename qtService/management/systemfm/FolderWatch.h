#pragma once

#include <QHash>
#include <QObject>
#include <QStringList>
#include <QTimer>

class QSocketNotifier;

namespace kerval::systemfm {

// Tells of changes in a set of folders: files that come, go, are renamed or were written to the end. One signal
// follows 250 ms after the last of a run of changes, and no later than a second after the first. Where the system
// cannot watch all of the folders, `fallback` is asked regularly instead whether anything has changed.
//
// Lives on the thread that makes it, which runs an event loop.
class FolderWatch : public QObject
{
    Q_OBJECT

public:
    explicit FolderWatch(QObject* parent = nullptr);
    ~FolderWatch() override;

    // Watches these folders and no others. A folder that is missing is watched for by way of the nearest one above it.
    // New ones count as changed.
    void setFolders(const QStringList& folders);
    // Behaves as if something had changed now.
    void trigger();

signals:
    void changed();
    // The watch is incomplete and time has passed: somebody should look.
    void lookNeeded();

private slots:
    void readEvents();
    void announce();

private:
    int m_inotify = -1;
    QSocketNotifier* m_notifier = nullptr;
    QHash<QString, int> m_watches;
    QHash<int, QString> m_paths;
    QTimer m_debounce;
    QTimer m_limit;
    QTimer m_poll;
};

} // namespace kerval::systemfm
