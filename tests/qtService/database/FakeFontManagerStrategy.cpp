#include "tests/qtService/database/FakeFontManagerStrategy.h"

using namespace kerval::systemfm;

FakeFontManagerStrategy::FakeFontManagerStrategy()
    : FontManagerStrategyInterface(nullptr)
{
}

void FakeFontManagerStrategy::setActive(const QHash<QString, ActivityType>& activeFiles)
{
    {
        QMutexLocker locker(&m_mutex);
        m_activeFiles = activeFiles;
    }
    emit activeFontsChanged();
}

QList<SystemFontDescriptor> FakeFontManagerStrategy::activeFonts()
{
    QMutexLocker locker(&m_mutex);
    QList<SystemFontDescriptor> fonts;
    for (auto it = m_activeFiles.constBegin(); it != m_activeFiles.constEnd(); ++it)
        fonts.append(SystemFontDescriptor(it.key(), it.value()));
    return fonts;
}

QStringList FakeFontManagerStrategy::installedFontFiles()
{
    QMutexLocker locker(&m_mutex);
    return m_activeFiles.keys();
}

QHash<QString, int> FakeFontManagerStrategy::change(const QString& fileName, const QStringList& fontNames,
                                                    ActivityType activityType)
{
    QMutexLocker locker(&m_mutex);
    if (activityType == Inactive)
        m_activeFiles.remove(fileName);
    else
        m_activeFiles.insert(fileName, activityType);
    return sameForAll(fontNames, Done);
}

QHash<QString, int> FakeFontManagerStrategy::activatePermanently(const QString& fileName, const QStringList& fontNames)
{
    return change(fileName, fontNames, PermanentlyActive);
}

QHash<QString, int> FakeFontManagerStrategy::activateTemporarily(const QString& fileName, const QStringList& fontNames)
{
    return change(fileName, fontNames, TemporarilyActive);
}

QHash<QString, int> FakeFontManagerStrategy::deactivate(const QString& fileName, const QStringList& fontNames)
{
    return change(fileName, fontNames, Inactive);
}

bool FakeFontManagerStrategy::hasNativeConflictCheck()
{
    return false;
}

void FakeFontManagerStrategy::notifyFontChange() {}

QString FakeFontManagerStrategy::fontsFolder()
{
    return QStringLiteral("/usr/share/fonts");
}

QStringList FakeFontManagerStrategy::protectedFontFiles()
{
    return {QStringLiteral("arial.ttf"), QStringLiteral("core.otf")};
}

FontActivityReason FakeFontManagerStrategy::activityReason(const QString&)
{
    return {};
}
