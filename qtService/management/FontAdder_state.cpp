// What the adder knows of its run, and the files that keep its queue and the scan paths.
#include "qtService/management/FontAdder.h"

#include "qtService/app/core/FMSLog.h"
#include "qtService/app/core/PathCodec.h"
#include "qtService/app/core/SettingsFolders.h"

#include <QFile>
#include <QSaveFile>

namespace {

QString queueFileName()
{
    return krv::userSettingsFolder() + QStringLiteral("/fontadder.ev");
}

QString scanPathsFileName()
{
    return krv::userSettingsFolder() + QStringLiteral("/paths");
}

} // namespace

bool FontAdder::hasState(int bits) const
{
    QReadLocker locker(&m_lock);
    return m_state & bits;
}

void FontAdder::changeState(int set, int clear)
{
    {
        QWriteLocker locker(&m_lock);
        const int state = (m_state | set) & ~clear;
        if (state == m_state)
            return;
        m_state = state;
    }
    emit stateChanged();
}

void FontAdder::resetCounters()
{
    bool fontsChanged = false;
    bool addedChanged = false;
    {
        QWriteLocker locker(&m_lock);
        fontsChanged = m_numberOfFonts != m_queue.size();
        addedChanged = m_numberOfAddedFonts != 0;
        m_numberOfFonts = m_queue.size();
        m_numberOfAddedFonts = 0;
    }
    if (fontsChanged)
        emit numberOfFontsChanged();
    if (addedChanged)
        emit numberOfAddedFontsChanged();
}

void FontAdder::countProcessed()
{
    {
        QWriteLocker locker(&m_lock);
        // A stop has set the counters back while this job was running.
        if (m_state & Stopping)
            return;
        ++m_numberOfAddedFonts;
    }
    emit numberOfAddedFontsChanged();
}

void FontAdder::addFailure(const QString& file, int code)
{
    {
        QWriteLocker locker(&m_lock);
        m_failedFiles.insert(file, code);
    }
    FMSLog::logEvent(FMSLog::FontError, file);
    emit failedFontFilesChanged();
}

bool FontAdder::isSearching() const
{
    return hasState(Searching);
}

bool FontAdder::isAdding() const
{
    return hasState(Adding);
}

bool FontAdder::isStopping() const
{
    return hasState(Stopping);
}

bool FontAdder::isPaused() const
{
    return hasState(Paused);
}

bool FontAdder::isPausing() const
{
    return hasState(Pausing);
}

int FontAdder::numberOfFonts() const
{
    QReadLocker locker(&m_lock);
    return m_numberOfFonts;
}

int FontAdder::numberOfAddedFonts() const
{
    QReadLocker locker(&m_lock);
    return m_numberOfAddedFonts;
}

QHash<QString, int> FontAdder::failedFontFiles() const
{
    QReadLocker locker(&m_lock);
    return m_failedFiles;
}

QString FontAdder::failureText(int failureCode)
{
    switch (failureCode) {
    case BrokenNameTable:
        return tr("Broken name table");
    case EmptyPostScriptName:
        return tr("Empty PostScript name");
    case HiddenFontName:
        return tr("Font name start with '.', it should remain hidden");
    case ProcessingFailed:
        return tr("Failed to process the file");
    default:
        return QString();
    }
}

bool FontAdder::searchDoneOnce() const
{
    QReadLocker locker(&m_lock);
    return m_searchDoneOnce;
}

QString FontAdder::adderExecutable() const
{
    return m_adderExecutable;
}

int FontAdder::maxRunningJobs() const
{
    return m_maxRunningJobs;
}

int FontAdder::runningJobCount() const
{
    QReadLocker locker(&m_lock);
    return m_runningJobs.size();
}

// Files

QList<FontQueue::Face> FontAdder::unstoredFaces() const
{
    QReadLocker locker(&m_lock);
    QList<FontQueue::Face> faces = m_facesInWork.values();
    faces.append(m_queue.faces());
    return faces;
}

void FontAdder::saveQueue() const
{
    FontQueue::save(queueFileName(), unstoredFaces());
}

void FontAdder::restoreQueue()
{
    onFontFilesFound(FontQueue::load(queueFileName()));
    saveQueue();
    if (numberOfFonts() > 0)
        changeState(Adding | Paused, 0);
}

QStringList FontAdder::scanPaths()
{
    QFile file(scanPathsFileName());
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QStringList paths;
    const QList<QString> parts = QString::fromUtf8(file.readAll()).trimmed().split(QStringLiteral("|||"));
    for (const QString& part : parts)
        if (!part.isEmpty())
            paths.append(krv::decodePath(part.toUtf8()));
    return paths;
}

void FontAdder::setScanPaths(const QStringList& paths)
{
    QByteArray text;
    for (const QString& path : paths)
        text += krv::encodePath(path) + QByteArrayLiteral("|||");
    QSaveFile file(scanPathsFileName());
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !file.commit())
        qWarning("E_0_ The scan paths could not be written: %s", qUtf8Printable(file.errorString()));
}
