#pragma once

#include "qtService/management/systemfm/FontManagerStrategyInterface.h"
#include "qtService/management/systemfm/WindowsFontOperations.h"

#include <QHash>
#include <QReadWriteLock>
#include <QSet>
#include <QSettings>
#include <QSharedPointer>
#include <QTimer>

#include <memory>

namespace kerval::systemfm {

// Fonts on Windows: the registry says which files are active for good, and files loaded besides last for the logon
// session. All that is asked of the system goes through WindowsFontOperations; the logic here runs anywhere.
//
// Paths are compared in lower case with native separators. Lives on a thread with an event loop; a change told by any
// program is read 250 ms after the last such message.
class FontManagerStrategyWindows : public FontManagerStrategyInterface
{
    Q_OBJECT

public:
    FontManagerStrategyWindows(std::unique_ptr<WindowsFontOperations> operations, const QString& settingsFolder);
    ~FontManagerStrategyWindows() override;

    QList<SystemFontDescriptor> activeFonts() override;
    QStringList installedFontFiles() override;
    QHash<QString, int> activatePermanently(const QString& fileName, const QStringList& fontNames) override;
    QHash<QString, int> activateTemporarily(const QString& fileName, const QStringList& fontNames) override;
    QHash<QString, int> deactivate(const QString& fileName, const QStringList& fontNames) override;
    bool hasNativeConflictCheck() override;
    void notifyFontChange() override;
    QString fontsFolder() override;
    QStringList protectedFontFiles() override;
    FontActivityReason activityReason(const QString& fileName) override;

signals:
    void startTimer();

private slots:
    void updateActiveFonts(bool emitNotification);
    void updateActiveFonts();

private:
    static QString normalised(const QString& path);
    static QString resourceArgument(const QString& fileName);
    static QString registryName(const QString& fileName, const QStringList& fontNames);
    QString fullPath(const QString& registryData) const;
    QByteArray sessionId();
    bool registerFont(const QString& fileName, const QStringList& fontNames);
    bool unregisterFont(const QString& fileName);

    std::unique_ptr<WindowsFontOperations> m_operations;
    QReadWriteLock m_lock; // guards the sets and tables below
    QString m_fontsFolder;
    QSharedPointer<QSettings> m_tempSettings;
    QStringList m_registryLocations;
    QSet<QString> m_tempActiveFonts;
    QHash<QString, QString> m_registeredFonts; // full path -> value name
    QSet<QString> m_permanentActiveFonts;
    QTimer m_updateTimer;
};

} // namespace kerval::systemfm
