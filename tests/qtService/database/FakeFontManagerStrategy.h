#pragma once

#include "qtService/management/systemfm/FontManagerStrategyInterface.h"

#include <QMutex>

// An operating system's fonts in memory, for tests of what builds on the system font manager.
class FakeFontManagerStrategy : public kerval::systemfm::FontManagerStrategyInterface
{
    Q_OBJECT

public:
    FakeFontManagerStrategy();

    // As if another program had changed it.
    void setActive(const QHash<QString, kerval::systemfm::ActivityType>& activeFiles);

    QList<kerval::systemfm::SystemFontDescriptor> activeFonts() override;
    QStringList installedFontFiles() override;
    QHash<QString, int> activatePermanently(const QString& fileName, const QStringList& fontNames) override;
    QHash<QString, int> activateTemporarily(const QString& fileName, const QStringList& fontNames) override;
    QHash<QString, int> deactivate(const QString& fileName, const QStringList& fontNames) override;
    bool hasNativeConflictCheck() override;
    void notifyFontChange() override;
    QString fontsFolder() override;
    QStringList protectedFontFiles() override;
    kerval::systemfm::FontActivityReason activityReason(const QString& fileName) override;

private:
    QHash<QString, int> change(const QString& fileName, const QStringList& fontNames,
                               kerval::systemfm::ActivityType activityType);

    QMutex m_mutex;
    QHash<QString, kerval::systemfm::ActivityType> m_activeFiles;
};
