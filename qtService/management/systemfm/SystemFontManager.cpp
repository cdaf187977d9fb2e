#include "qtService/management/systemfm/SystemFontManager.h"

#include "qtService/app/core/KrvSingletonObject.h"
#include "qtService/management/systemfm/platform_fontmanagerstrategy.h"

namespace kerval::systemfm {

SystemFontManager* SystemFontManager::instance()
{
    return KrvSingletonObject<SystemFontManager>::instance();
}

SystemFontManager::SystemFontManager(QObject* parent)
    : SystemFontManager(createPlatformStrategy(), parent)
{
}

SystemFontManager::SystemFontManager(std::unique_ptr<FontManagerStrategyInterface> strategy, QObject* parent)
    : QObject(parent)
    , m_strategy(std::move(strategy))
{
    connect(m_strategy.get(), &FontManagerStrategyInterface::activeFontsChanged, this,
            &SystemFontManager::onActiveFontsChanged, Qt::DirectConnection);
}

SystemFontManager::~SystemFontManager() = default;

QList<SystemFontDescriptor> SystemFontManager::activeFonts()
{
    return m_strategy->activeFonts();
}

QStringList SystemFontManager::installedFontFiles()
{
    return m_strategy->installedFontFiles();
}

QHash<QString, int> SystemFontManager::activatePermanently(const QString& fileName, const QStringList& fontNames)
{
    return m_strategy->activatePermanently(fileName, fontNames);
}

QHash<QString, int> SystemFontManager::activateTemporarily(const QString& fileName, const QStringList& fontNames)
{
    return m_strategy->activateTemporarily(fileName, fontNames);
}

QHash<QString, int> SystemFontManager::deactivate(const QString& fileName, const QStringList& fontNames)
{
    return m_strategy->deactivate(fileName, fontNames);
}

bool SystemFontManager::hasNativeConflictCheck()
{
    return m_strategy->hasNativeConflictCheck();
}

bool SystemFontManager::isSupportedFont(const QString& fileName)
{
    return m_strategy->isSupportedFont(fileName);
}

void SystemFontManager::notifyFontChange()
{
    m_strategy->notifyFontChange();
}

QString SystemFontManager::fontsFolder()
{
    return m_strategy->fontsFolder();
}

QStringList SystemFontManager::protectedFontFiles()
{
    return m_strategy->protectedFontFiles();
}

FontActivityReason SystemFontManager::activityReason(const QString& fileName)
{
    return m_strategy->activityReason(fileName);
}

void SystemFontManager::onActiveFontsChanged()
{
    {
        QMutexLocker lock(&m_holdLock);
        if (m_held) {
            m_changedWhileHeld = true;
            return;
        }
    }
    emit activeFontsChanged();
}

SystemFontManager::Batch::Batch(SystemFontManager* manager)
    : m_manager(manager)
{
    m_manager->m_batchLock.lock();
    {
        QMutexLocker lock(&m_manager->m_holdLock);
        m_manager->m_held = true;
    }
    m_manager->m_strategy->beginBatch();
}

SystemFontManager::Batch::~Batch()
{
    if (!m_finished)
        finish();
}

QHash<QString, int> SystemFontManager::Batch::finish()
{
    m_finished = true;
    const QHash<QString, int> failed = m_manager->m_strategy->endBatch();
    bool changed = false;
    {
        QMutexLocker lock(&m_manager->m_holdLock);
        m_manager->m_held = false;
        changed = std::exchange(m_manager->m_changedWhileHeld, false);
    }
    m_manager->m_batchLock.unlock();
    if (changed)
        emit m_manager->activeFontsChanged();
    return failed;
}

} // namespace kerval::systemfm
