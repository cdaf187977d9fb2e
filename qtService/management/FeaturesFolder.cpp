#include "qtService/management/FeaturesFolder.h"

#include <QDir>
#include <QFile>

FeaturesFolder::FeaturesFolder(const QString& path)
    : m_path(path)
{
}

FeaturesFolder::~FeaturesFolder() = default;

bool FeaturesFolder::create() const
{
    return !m_path.isEmpty() && QDir().mkpath(m_path);
}

bool FeaturesFolder::isFilled() const
{
    return !m_path.isEmpty() && QFile::exists(m_path + QStringLiteral("/ids.bin"));
}

bool FeaturesFolder::isReady() const
{
    QMutexLocker locker(&m_mutex);
    return !m_isExtracting && !m_isStale && isFilled();
}

bool FeaturesFolder::beginExtraction()
{
    QMutexLocker locker(&m_mutex);
    if (m_isExtracting)
        return false;
    m_isExtracting = true;
    m_isStale = false;
    ++m_generation;
    return true;
}

void FeaturesFolder::endExtraction()
{
    {
        QMutexLocker locker(&m_mutex);
        m_isExtracting = false;
        ++m_generation;
    }
    emit extractionEnded();
}

bool FeaturesFolder::clear()
{
    QMutexLocker locker(&m_mutex);
    ++m_generation;
    if (m_path.isEmpty())
        return true;
    if (m_isExtracting) {
        m_isStale = true;
        return true;
    }
    QDir folder(m_path);
    QStringList files = folder.entryList({QStringLiteral("*.bin")}, QDir::Files | QDir::Hidden | QDir::System);
    // First what tells that the folder is whole.
    if (files.removeOne(QStringLiteral("ids.bin")))
        files.prepend(QStringLiteral("ids.bin"));
    bool cleared = true;
    for (const QString& file : qAsConst(files))
        cleared = folder.remove(file) && cleared;
    return cleared;
}

int FeaturesFolder::generation() const
{
    QMutexLocker locker(&m_mutex);
    return m_generation;
}
