#pragma once

#include "qtService/management/systemfm/FontActivityReason.h"
#include "qtService/management/systemfm/SystemFontDescriptor.h"

#include <QHash>
#include <QObject>
#include <QStringList>

namespace kerval::systemfm {

// What an operating system does with font files. Every operation may be called from any thread; activeFontsChanged()
// is emitted from a thread of the strategy's own, at most once for all changes that come close together, its own ones
// included.
//
// activatePermanently(), activateTemporarily() and deactivate() answer one result for each given font name, the same
// for all: 0 done, 1 the system's registration could not be changed, 2 the file could not be loaded or unloaded.
class FontManagerStrategyInterface : public QObject
{
    Q_OBJECT

public:
    enum Result
    {
        Done = 0,
        RegistrationFailed = 1,
        LoadFailed = 2
    };

    // Every supported permanently active file (type 2), then every temporarily active one (type 1).
    virtual QList<SystemFontDescriptor> activeFonts() = 0;
    // Every font file that the system has registered, switched off ones included.
    virtual QStringList installedFontFiles() = 0;
    virtual QHash<QString, int> activatePermanently(const QString& fileName, const QStringList& fontNames) = 0;
    virtual QHash<QString, int> activateTemporarily(const QString& fileName, const QStringList& fontNames) = 0;
    virtual QHash<QString, int> deactivate(const QString& fileName, const QStringList& fontNames) = 0;
    // True when the system itself refuses two fonts of one name.
    virtual bool hasNativeConflictCheck() = 0;
    virtual bool isSupportedFont(const QString& fileName);
    // Tells all programs that fonts changed, and stores which fonts are active for this session.
    virtual void notifyFontChange() = 0;

    // Between beginBatch() and endBatch() the strategy may put changes off and carry them out together; their answers
    // then say only that nothing stands against them. endBatch() carries them out and gives the result of every file
    // that failed after all. One batch at a time, begun and ended by one thread; SystemFontManager::Batch sees to it.
    virtual void beginBatch();
    virtual QHash<QString, int> endBatch();

    // The folder whose protected fonts nobody may switch off, and their file names without folders.
    virtual QString fontsFolder() = 0;
    virtual QStringList protectedFontFiles() = 0;

    // Reads files and configuration: not for the main thread.
    virtual FontActivityReason activityReason(const QString& fileName) = 0;

signals:
    void activeFontsChanged();

protected:
    explicit FontManagerStrategyInterface(QObject* parent = nullptr);
    static QHash<QString, int> sameForAll(const QStringList& fontNames, int result);
};

} // namespace kerval::systemfm
