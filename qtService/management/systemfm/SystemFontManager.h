#pragma once

#include "qtService/management/systemfm/FontManagerStrategyInterface.h"

#include <QMutex>
#include <QObject>

#include <memory>

namespace kerval::systemfm {

// The fonts of this machine as the operating system has them, for the whole process: a facade over the strategy of the
// platform. Every operation may be called from any thread. activeFontsChanged() comes from a thread of the strategy;
// receivers take it queued.
class SystemFontManager : public QObject
{
    Q_OBJECT

public:
    // Made on first use, destroyed at application exit. The first call reads the system's whole font set: make it on
    // a thread that may wait.
    static SystemFontManager* instance();

    explicit SystemFontManager(QObject* parent = nullptr);
    SystemFontManager(std::unique_ptr<FontManagerStrategyInterface> strategy, QObject* parent);
    ~SystemFontManager() override;

    QList<SystemFontDescriptor> activeFonts();
    QStringList installedFontFiles();
    QHash<QString, int> activatePermanently(const QString& fileName, const QStringList& fontNames);
    QHash<QString, int> activateTemporarily(const QString& fileName, const QStringList& fontNames);
    QHash<QString, int> deactivate(const QString& fileName, const QStringList& fontNames);
    bool hasNativeConflictCheck();
    bool isSupportedFont(const QString& fileName);
    void notifyFontChange();

    // The system's fonts folder (native separators) and the names of the files in it that must stay active.
    QString fontsFolder();
    QStringList protectedFontFiles();

    // Why the font file is active or not. Reads files and configuration: not for the main thread.
    FontActivityReason activityReason(const QString& fileName);

    // A run of changes that the system is told of once. While it lives, activeFontsChanged() is held back; a second
    // batch waits for the first. finish() carries out what the strategy has put off and gives the result of every file
    // that failed after all; the destructor finishes what was not.
    class Batch
    {
    public:
        explicit Batch(SystemFontManager* manager);
        ~Batch();
        Batch(const Batch&) = delete;
        Batch& operator=(const Batch&) = delete;
        QHash<QString, int> finish();

    private:
        SystemFontManager* m_manager;
        bool m_finished = false;
    };

signals:
    void activeFontsChanged();

private slots:
    void onActiveFontsChanged();

private:
    std::unique_ptr<FontManagerStrategyInterface> m_strategy;
    QMutex m_batchLock;
    QMutex m_holdLock; // guards the two below
    bool m_held = false;
    bool m_changedWhileHeld = false;
};

} // namespace kerval::systemfm
