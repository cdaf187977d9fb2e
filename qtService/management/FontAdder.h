#pragma once

#include "qtService/app/core/AbstractAsynchronousCommand.h"
#include "qtService/management/FontQueue.h"

#include <QHash>
#include <QObject>
#include <QPair>
#include <QReadWriteLock>
#include <QSharedPointer>
#include <QStringList>
#include <QTimer>

class FindFontFilesCommand;
class FontAndFeatureInsertionJob;
class FontProcessingJob;
class KrvFeatureRepository;
class KrvFontRepository;
class KrvSimilarityWrapper;
class KrvUserDatabase;

// The way of new fonts into the catalogue: search, queue, analysis, insertion.
//
// Files are searched on the thread pool; every face that is neither catalogued nor waiting is queued; one process of
// the adder program for each face, as many at once as the machine has cores, analyses the queue; every ten seconds, and
// at the end of a run, what is done is stored in one batch. A run starts by itself when a search ends, and ends by
// itself, like a completed stop, once nothing is searched, queued, analysed or unstored.
//
// Faces that are not stored yet are in the queue file after each search and each insertion, so that a service that is
// killed, quit or paused loses none of them; they come back as a paused run. Only the user's own stop empties the
// queue.
//
// Lives in the service's thread; the slots and the readers may be called from any thread. Signals are emitted in the
// service's thread with no lock held.
class FontAdder : public QObject
{
    Q_OBJECT

public:
    enum FailureCode
    {
        BrokenNameTable = 1,
        EmptyPostScriptName = 2,
        HiddenFontName = 3,
        ProcessingFailed = 4
    };

    // What is not owned (similarity, user database) outlives the adder.
    FontAdder(const QString& adderExecutable, KrvSimilarityWrapper* similarity, KrvUserDatabase* userDatabase,
              QSharedPointer<KrvFontRepository> repository, QSharedPointer<KrvFeatureRepository> featureRepository);
    // Shuts down first, if that has not been done.
    ~FontAdder() override;

    // Ends a run that is under way: waits, without an event loop, for the running processes and stores what they found.
    // The adder does nothing after that. To be called in the adder's thread, as long as what it was given exists.
    void shutDown();

    bool isSearching() const;
    bool isAdding() const;
    bool isStopping() const;
    bool isPaused() const;
    bool isPausing() const;
    // Faces of this run, and how many of them are done, successfully or not.
    int numberOfFonts() const;
    int numberOfAddedFonts() const;
    // File -> failure code.
    QHash<QString, int> failedFontFiles() const;
    static QString failureText(int failureCode);
    bool searchDoneOnce() const;
    QString adderExecutable() const;
    int processingTimeout() const { return 60; } // seconds
    int maxRetries() const { return 1; }
    int maxRunningJobs() const;
    int runningJobCount() const;

    // The folders that every scan searches, kept in the file "paths" of the settings folder.
    static QStringList scanPaths();
    static void setScanPaths(const QStringList& paths);

public slots:
    void startAdding();
    void stopAdding();
    void pauseAdding();
    void addFontsFromPaths(QStringList pathList);
    void abortSearchForFontFiles();

signals:
    void fontFileSearchStarted();
    void fontFileSearchFinished();
    void fontAddingStarted();
    void fontAddingResumed();
    void fontAddingPaused();
    void fontAddingStopped();
    void insertingDataStarted();
    void insertingDataFinished();
    void failedFontFilesChanged();
    void numberOfFontsChanged();
    void numberOfAddedFontsChanged();
    void stateChanged();

    void shouldStart();
    void shouldStop();
    void shouldPause();
    void shouldAddFonts(QStringList pathList);

private slots:
    void startAddingPriv();
    void stopAddingPriv();
    void pauseAddingPriv();
    void addFontsFromPathsPriv(QStringList pathList);
    void processNextFont();
    void onFindFontFilesCommandStateChanged(QString jobId);
    void onFontProcessingJobStateChanged(QString jobId);
    void onInsertionJobStateChanged(AbstractAsynchronousCommand::State state);
    void insertProcessedFonts();
    void onFontFilesFound(QList<QPair<QString, int>> fontFileFaceIndexList);
    void onFailedFontFileFound(QString fileName, int error);

private:
    enum StateBit
    {
        Searching = 0x01,
        Adding = 0x02,
        Stopping = 0x04,
        Paused = 0x08,
        Pausing = 0x10,
        ShuttingDown = 0x40
    };

    bool hasState(int bits) const;
    // Sets and clears bits and says so when something changed.
    void changeState(int set, int clear);
    void resetCounters();
    void countProcessed();
    void addFailure(const QString& file, int code);
    void connectSearch(const QString& jobId, const QSharedPointer<FindFontFilesCommand>& command);
    QSharedPointer<FontProcessingJob> takeNextJob(QString* jobId);
    // Goes on to the next step of a run when everything before it has ended: more jobs, an insertion, the end.
    void advance();
    bool mayEndRun() const;
    void finishRun();
    void startInsertTimer();
    void dropInsertTimer();
    QList<FontQueue::Face> unstoredFaces() const;
    void saveQueue() const;
    void restoreQueue();

    mutable QReadWriteLock m_lock;
    int m_state = 0;
    int m_numberOfFonts = 0;
    int m_numberOfAddedFonts = 0;
    const int m_maxRunningJobs;
    bool m_searchDoneOnce = false;
    KrvUserDatabase* const m_userDatabase;
    KrvSimilarityWrapper* const m_similarity;
    QSharedPointer<QTimer> m_insertTimer;
    const QSharedPointer<KrvFontRepository> m_repository;
    const QSharedPointer<KrvFeatureRepository> m_featureRepository;
    const QString m_adderExecutable;
    QHash<QString, QSharedPointer<FindFontFilesCommand>> m_findCommands;
    QHash<QString, QSharedPointer<FontProcessingJob>> m_runningJobs;
    QHash<FontProcessingJob*, QSharedPointer<FontProcessingJob>> m_processedJobs;
    QHash<FontProcessingJob*, QSharedPointer<FontProcessingJob>> m_insertingJobs;
    QSharedPointer<FontAndFeatureInsertionJob> m_insertionJob;
    FontQueue m_queue;
    QSet<FontQueue::Face> m_facesInWork; // running, processed or being inserted
    QHash<QString, int> m_failedFiles;
};
