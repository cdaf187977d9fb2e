#include "qtService/management/FontAdder.h"

#include "qtService/app/core/FMSLog.h"
#include "qtService/database/KrvFontRepository.h"
#include "qtService/management/FindFontFilesCommand.h"
#include "qtService/management/FontAndFeatureInsertionJob.h"
#include "qtService/management/FontProcessingJob.h"
#include "qtService/management/KrvSimilarityWrapper.h"

#include <QCoreApplication>
#include <QThread>
#include <QUuid>

#include <algorithm>

namespace {

constexpr int insertInterval = 10000;

QString newJobId()
{
    return QUuid::createUuid().toString();
}

// Jobs and searches are dropped in slots that their own signals called.
template <class Job, class... Arguments>
QSharedPointer<Job> makeJob(Arguments&&... arguments)
{
    return QSharedPointer<Job>(new Job(std::forward<Arguments>(arguments)...), &QObject::deleteLater);
}

} // namespace

FontAdder::FontAdder(const QString& adderExecutable, KrvSimilarityWrapper* similarity, KrvUserDatabase* userDatabase,
                     QSharedPointer<KrvFontRepository> repository,
                     QSharedPointer<KrvFeatureRepository> featureRepository)
    : m_maxRunningJobs(QThread::idealThreadCount())
    , m_userDatabase(userDatabase)
    , m_similarity(similarity)
    , m_repository(std::move(repository))
    , m_featureRepository(std::move(featureRepository))
    , m_adderExecutable(adderExecutable)
{
    connect(this, &FontAdder::shouldStart, this, &FontAdder::startAddingPriv);
    connect(this, &FontAdder::shouldPause, this, &FontAdder::pauseAddingPriv);
    connect(this, &FontAdder::shouldStop, this, &FontAdder::stopAddingPriv);
    connect(this, &FontAdder::shouldAddFonts, this, &FontAdder::addFontsFromPathsPriv);
    restoreQueue();
}

FontAdder::~FontAdder()
{
    shutDown();
}

void FontAdder::shutDown()
{
    if (hasState(ShuttingDown))
        return;
    changeState(ShuttingDown, 0);
    abortSearchForFontFiles();
    if (isAdding() && !isPaused() && !isPausing())
        stopAddingPriv();

    // This thread's events would deliver what the running jobs say, but also whatever else waits for this thread while
    // the service is being taken apart. So each job is waited for in turn.
    while (isStopping() || isPausing()) {
        const auto running = m_runningJobs.values();
        for (const QSharedPointer<FontProcessingJob>& job : running)
            job->waitForFinished();
        const QSharedPointer<FontAndFeatureInsertionJob> insertion = m_insertionJob;
        if (insertion)
            insertion->waitForFinished();
        QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
    }
    m_findCommands.clear();
}

void FontAdder::startAdding()
{
    emit shouldStart();
}

void FontAdder::stopAdding()
{
    emit shouldStop();
}

void FontAdder::pauseAdding()
{
    emit shouldPause();
}

void FontAdder::addFontsFromPaths(QStringList pathList)
{
    emit shouldAddFonts(pathList);
}

void FontAdder::abortSearchForFontFiles()
{
    QList<QSharedPointer<FindFontFilesCommand>> commands;
    {
        QReadLocker locker(&m_lock);
        commands = m_findCommands.values();
    }
    for (const QSharedPointer<FindFontFilesCommand>& command : qAsConst(commands))
        command->cancel();
}

// Search

void FontAdder::addFontsFromPathsPriv(QStringList pathList)
{
    if (pathList.isEmpty() || hasState(ShuttingDown))
        return;
    if (!isSearching()) {
        emit fontFileSearchStarted();
        changeState(Searching, 0);
    }
    const QString jobId = newJobId();
    const auto command = makeJob<FindFontFilesCommand>(pathList, 0);
    connectSearch(jobId, command);
    {
        QWriteLocker locker(&m_lock);
        m_findCommands.insert(jobId, command);
    }
    command->start();
}

void FontAdder::connectSearch(const QString& jobId, const QSharedPointer<FindFontFilesCommand>& command)
{
    // By the state the signal carries: a short search has ended before the news of its start arrives, and what it found
    // comes between the two.
    connect(command.data(), &FindFontFilesCommand::stateChanged, this,
            [this, jobId](AbstractAsynchronousCommand::State state) {
                if (state >= AbstractAsynchronousCommand::Finished)
                    onFindFontFilesCommandStateChanged(jobId);
            });
    // What an aborted search found may still be under way to this thread; it is not wanted any more.
    const QWeakPointer<FindFontFilesCommand> search = command;
    const auto isWanted = [search] {
        const auto strong = search.toStrongRef();
        return strong && strong->state() != FindFontFilesCommand::Cancelled;
    };
    connect(command.data(), &FindFontFilesCommand::fontFilesFound, this,
            [this, isWanted](const QList<QPair<QString, int>>& faces) {
                if (isWanted())
                    onFontFilesFound(faces);
            });
    connect(command.data(), &FindFontFilesCommand::failedFontFileFound, this,
            [this, isWanted](const QString& fileName, int error) {
                if (isWanted())
                    onFailedFontFileFound(fileName, error);
            });
}

void FontAdder::onFontFilesFound(QList<QPair<QString, int>> fontFileFaceIndexList)
{
    const QHash<QString, QList<int>> catalogued = m_repository->fileFaces();
    int appended = 0;
    {
        QWriteLocker locker(&m_lock);
        for (const FontQueue::Face& face : qAsConst(fontFileFaceIndexList)) {
            const auto file = catalogued.constFind(face.first);
            const bool isCatalogued = file != catalogued.constEnd() && file->contains(face.second);
            if (!isCatalogued && !m_facesInWork.contains(face) && m_queue.append(face))
                ++appended;
        }
        m_numberOfFonts += appended;
    }
    if (appended > 0)
        emit numberOfFontsChanged();
}

void FontAdder::onFailedFontFileFound(QString fileName, int error)
{
    addFailure(fileName, error >= BrokenNameTable && error <= HiddenFontName ? error : 0);
}

void FontAdder::onFindFontFilesCommandStateChanged(QString jobId)
{
    bool isLast = false;
    {
        QWriteLocker locker(&m_lock);
        if (m_findCommands.remove(jobId) == 0)
            return;
        m_searchDoneOnce = true;
        isLast = m_findCommands.isEmpty();
    }
    if (!isLast)
        return;
    emit fontFileSearchFinished();
    changeState(0, Searching);
    saveQueue();
    if (!hasState(ShuttingDown | Stopping | Pausing))
        startAddingPriv();
}

// Run

void FontAdder::startAddingPriv()
{
    if (hasState(ShuttingDown))
        return;
    const bool wasPaused = isPaused();
    if (isAdding() && !wasPaused) {
        advance();
        return;
    }
    {
        QReadLocker locker(&m_lock);
        if (m_queue.isEmpty() && !wasPaused)
            return;
    }
    startInsertTimer();
    if (wasPaused) {
        FMSLog::logEvent(FMSLog::ScanResumed, QString());
        emit fontAddingResumed();
    } else {
        FMSLog::logEvent(FMSLog::ScanStarted, QString());
        emit fontAddingStarted();
    }
    changeState(0, Paused);
    changeState(Adding, 0);
    advance();
}

void FontAdder::pauseAddingPriv()
{
    if (!isAdding() || hasState(Paused | Pausing | Stopping))
        return;
    dropInsertTimer();
    FMSLog::logEvent(FMSLog::ScanPaused, QString());
    changeState(Adding | Pausing, 0);
    advance();
}

void FontAdder::stopAddingPriv()
{
    if (!isAdding() || isStopping())
        return;
    dropInsertTimer();
    {
        QWriteLocker locker(&m_lock);
        // Quitting is no wish to forget what waits.
        if (!(m_state & ShuttingDown))
            m_queue.clear();
    }
    FMSLog::logEvent(runningJobCount() == 0 ? FMSLog::ScanFinished : FMSLog::ScanAborted, QString());
    resetCounters();
    const bool wasPaused = isPaused();
    changeState(Stopping, Paused | Pausing);
    abortSearchForFontFiles();
    if (wasPaused)
        finishRun();
    else
        advance();
}

void FontAdder::processNextFont()
{
    while (isAdding() && !hasState(Paused | Pausing | Stopping)) {
        QString jobId;
        const QSharedPointer<FontProcessingJob> job = takeNextJob(&jobId);
        if (!job)
            return;
        connect(job.data(), &FontProcessingJob::stateChanged, this,
                [this, jobId] { onFontProcessingJobStateChanged(jobId); });
        job->start();
    }
}

QSharedPointer<FontProcessingJob> FontAdder::takeNextJob(QString* jobId)
{
    QWriteLocker locker(&m_lock);
    if (m_queue.isEmpty() || m_runningJobs.size() >= m_maxRunningJobs)
        return {};
    const FontQueue::Face face = m_queue.takeFirst();
    m_facesInWork.insert(face);
    const auto job =
        makeJob<FontProcessingJob>(m_adderExecutable, face.first, face.second, processingTimeout(), maxRetries());
    *jobId = newJobId();
    m_runningJobs.insert(*jobId, job);
    return job;
}

void FontAdder::onFontProcessingJobStateChanged(QString jobId)
{
    QSharedPointer<FontProcessingJob> job;
    bool succeeded = false;
    {
        QWriteLocker locker(&m_lock);
        job = m_runningJobs.value(jobId);
        if (!job || job->state() < AbstractAsynchronousCommand::Finished)
            return;
        m_runningJobs.remove(jobId);
        succeeded = job->state() == AbstractAsynchronousCommand::Finished;
        if (succeeded)
            m_processedJobs.insert(job.data(), job);
        else
            m_facesInWork.remove({job->fileName(), job->faceIndex()});
    }
    countProcessed();
    // The next process starts before this one's news is written down.
    processNextFont();
    if (succeeded)
        FMSLog::logEvent(FMSLog::FontProcessed, job->fileName());
    else
        addFailure(job->fileName(), ProcessingFailed);
    advance();
}

void FontAdder::advance()
{
    processNextFont();
    bool mustInsert = false;
    {
        QReadLocker locker(&m_lock);
        if (!mayEndRun())
            return;
        mustInsert = !m_processedJobs.isEmpty();
    }
    if (mustInsert)
        insertProcessedFonts();
    else
        finishRun();
}

// With the lock held: nothing is left that this run has to wait for, except for storing what is processed.
bool FontAdder::mayEndRun() const
{
    if (!(m_state & Adding) || (m_state & Paused) || !m_runningJobs.isEmpty() || m_insertionJob)
        return false;
    if (m_state & (Stopping | Pausing))
        return true;
    return m_queue.isEmpty() && !(m_state & Searching);
}

void FontAdder::finishRun()
{
    dropInsertTimer();
    if (isPausing()) {
        changeState(0, Pausing);
        changeState(Paused, 0);
        saveQueue();
        emit fontAddingPaused();
        return;
    }
    if (!isStopping())
        FMSLog::logEvent(FMSLog::ScanFinished, QString());
    changeState(0, Adding);
    changeState(0, Stopping);
    resetCounters();
    saveQueue();
    emit fontAddingStopped();
    // What a search has found that was begun after the stop, as a reset of the library does.
    if (!isSearching())
        startAddingPriv();
}

// Insertion

void FontAdder::insertProcessedFonts()
{
    QList<FontAndFeatureInsertionJob::Record> records;
    QSharedPointer<FontAndFeatureInsertionJob> insertion;
    {
        QWriteLocker locker(&m_lock);
        if (m_insertionJob || m_processedJobs.isEmpty())
            return;
        // By file and face, so that faces of one collection get ids in a row.
        QList<QSharedPointer<FontProcessingJob>> jobs = m_processedJobs.values();
        std::sort(jobs.begin(), jobs.end(), [](const auto& left, const auto& right) {
            return qMakePair(left->fileName(), left->faceIndex()) < qMakePair(right->fileName(), right->faceIndex());
        });
        records.reserve(jobs.size());
        for (const QSharedPointer<FontProcessingJob>& job : qAsConst(jobs))
            records.append({job->fontInfo(), job->features()});
        insertion = makeJob<FontAndFeatureInsertionJob>(records, m_userDatabase, m_repository, m_featureRepository);
        m_insertionJob = insertion;
        m_insertingJobs.swap(m_processedJobs);
    }
    emit insertingDataStarted();
    connect(insertion.data(), &FontAndFeatureInsertionJob::stateChanged, this, &FontAdder::onInsertionJobStateChanged);
    insertion->start();
}

void FontAdder::onInsertionJobStateChanged(AbstractAsynchronousCommand::State state)
{
    if (state < AbstractAsynchronousCommand::Finished)
        return;
    if (state == AbstractAsynchronousCommand::Finished && m_similarity)
        m_similarity->clearFeatures();

    QSharedPointer<FontAndFeatureInsertionJob> insertion;
    QHash<FontProcessingJob*, QSharedPointer<FontProcessingJob>> inserted;
    {
        QWriteLocker locker(&m_lock);
        insertion.swap(m_insertionJob);
        inserted.swap(m_insertingJobs);
        for (const QSharedPointer<FontProcessingJob>& job : qAsConst(inserted))
            m_facesInWork.remove({job->fileName(), job->faceIndex()});
    }
    if (state != AbstractAsynchronousCommand::Finished && insertion) {
        QSet<FontQueue::Face> stored;
        for (const StaticFontPtr& font : insertion->insertedFonts())
            stored.insert({font->fileName(), font->faceIndex()});
        for (const QSharedPointer<FontProcessingJob>& job : qAsConst(inserted)) {
            if (!stored.contains({job->fileName(), job->faceIndex()}))
                addFailure(job->fileName(), ProcessingFailed);
        }
    }
    saveQueue();
    emit insertingDataFinished();
    advance();
}

void FontAdder::startInsertTimer()
{
    m_insertTimer.reset(new QTimer, &QObject::deleteLater);
    connect(m_insertTimer.data(), &QTimer::timeout, this, &FontAdder::insertProcessedFonts);
    m_insertTimer->start(insertInterval);
}

void FontAdder::dropInsertTimer()
{
    if (m_insertTimer)
        m_insertTimer->stop();
    m_insertTimer.reset();
}
