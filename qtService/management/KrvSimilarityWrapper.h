#pragma once

#include <QElapsedTimer>
#include <QList>
#include <QObject>
#include <QPair>
#include <QProcess>
#include <QReadWriteLock>
#include <QSharedPointer>
#include <QString>
#include <QTimer>
#include <QVariant>

class FeaturesFolder;
class KrvFontRepository;

// Runs the two similarity programs, one request after the other: the first lays the catalogue's features out as files
// when they are not there, the second compares one font with the rest. Lives in the thread that makes it, which has to
// process events; similarityDone() comes once for each request and never out of the request function itself.
//
// Copies have queues and processes of their own and share the features folder: of several that find it empty one fills
// it and the others wait, and what was filled before the last clearFeatures() is not used.
class KrvSimilarityWrapper : public QObject
{
    Q_OBJECT

public:
    struct Request
    {
        int fontId = 0;
        int limit = 0;
        QString characters;
        QString inIds; // comma-separated; empty: the whole catalogue
        QVariant criteria;
        QString mode;
    };

    struct Result
    {
        QList<QPair<int, double>> matches; // id and deviance, best first
    };

    enum Error
    {
        Success = 0,
        FeaturesNotReady = 1,
        Busy = 2,
        ExtractionUnavailable = 3,
        SearchFailed = 4
    };

    // databaseType: 1 SQLite, else MySQL.
    KrvSimilarityWrapper(const QString& extractFeaturesApp, const QString& findSimilarApp,
                         const QString& featuresFolder, QSharedPointer<KrvFontRepository> repository,
                         const QString& databaseName, int databaseType, const QString& databaseUser,
                         const QString& databasePassword);
    // The other's configuration, in the calling thread.
    KrvSimilarityWrapper(const KrvSimilarityWrapper& other);
    ~KrvSimilarityWrapper() override;

    // `criteria` is carried through to similarityDone(). All return 0: every request is accepted and answered once.
    int requestSimilar(int fontId, const QString& characters, int limit, const QString& inIds,
                       const QVariant& criteria);
    int requestHarmonySameFamily(int fontId, const QString& characters, int limit, const QString& inIds,
                                 const QVariant& criteria);
    int requestHarmonyContrast(int fontId, const QString& characters, int limit, const QString& inIds,
                               const QVariant& criteria);
    int requestHarmonyBody(int fontId, const QString& characters, int limit, const QString& inIds,
                           const QVariant& criteria);
    int requestHarmonyHeadline(int fontId, const QString& characters, int limit, const QString& inIds,
                               const QVariant& criteria);
    int requestSmartChoiceAll(int fontId, const QString& characters, int limit, const QString& inIds,
                              const QVariant& criteria);
    int requestSmartChoiceBody(int fontId, const QString& characters, int limit, const QString& inIds,
                               const QVariant& criteria);
    int requestSmartChoiceHeadline(int fontId, const QString& characters, int limit, const QString& inIds,
                                   const QVariant& criteria);

    // Deletes the feature files, so that the next request has them made anew; any thread. True when all are gone.
    bool clearFeatures();
    // A program that runs longer is killed, and so is one that writes without end.
    void setTimeLimits(int extractionMilliseconds, int searchMilliseconds);
    // Fonts in the catalogue, those included that a collection may not hold.
    int catalogueSize() const;

signals:
    void similarityDone(KrvSimilarityWrapper::Request req, KrvSimilarityWrapper::Result result, int error);

private slots:
    void onProcessFinished(int exitcode, QProcess::ExitStatus status);

private:
    enum Mode
    {
        Idle = 0,
        Extracting = 1,
        Searching = 2,
        Waiting = 3 // for the extraction of another copy
    };

    void initialise();
    int enqueue(int fontId, const QString& characters, int limit, const QString& inIds, const QVariant& criteria,
                const QString& mode);
    int mode() const;
    void setMode(int mode);
    void startNext();
    void extract();
    int search(const Request& request);
    void startProcess(const QString& program, const QStringList& arguments, int timeLimit);
    void onOutput();
    void dropProcess();
    void onStartFailed();
    void onExtractionEnded();
    void onSearchEnded(bool succeeded, const QByteArray& output);
    void answer(const Result& result, int error);

    mutable QReadWriteLock m_lock; // guards queue and mode
    QList<Request> m_queue;
    const QString m_extractFeaturesApp;
    const QString m_findSimilarApp;
    const QString m_databaseName;
    const QString m_databaseUser;
    const QString m_databasePassword;
    const int m_databaseType;
    const QSharedPointer<KrvFontRepository> m_repository;
    const QSharedPointer<FeaturesFolder> m_features;
    int m_mode = Idle;
    QProcess* m_process = nullptr;
    QByteArray m_complaint; // of the running program, its beginning
    QTimer m_watchdog;
    int m_extractionLimit = 600000;
    int m_searchLimit = 60000;
    QElapsedTimer m_elapsed;
    int m_searchedGeneration = 0; // of the folder when the search began
    bool m_isRetry = false;
};

Q_DECLARE_METATYPE(KrvSimilarityWrapper::Request)
Q_DECLARE_METATYPE(KrvSimilarityWrapper::Result)
