#pragma once

#include "qtService/app/service/AddFontsToGroupsCommand.h"
#include "qtService/app/service/ClearDatabaseCommand.h"
#include "qtService/app/service/ClearOnlineSourceCommand.h"
#include "qtService/app/service/CloneGroupCommand.h"
#include "qtService/app/service/ExportFontsCommand.h"
#include "qtService/app/service/RemoveFontsCommand.h"
#include "qtService/app/service/RemoveFontsFromGroupsCommand.h"
#include "qtService/app/service/SetFontsHiddenCommand.h"
#include "qtService/app/service/SetOnlineSourceCommand.h"
#include "qtService/app/service/UpdateFileExistsCommand.h"
#include "qtService/database/FontDatabase.h"
#include "qtService/management/ExistingFontsGroup.h"
#include "qtService/management/ExtractFontArchiveCommand.h"
#include "qtService/management/FontActivityChangeCommand.h"
#include "qtService/management/ImportFontArchivesCommand.h"
#include "qtService/management/SimilarFontsGroup.h"
#include "qtService/management/SystemFontGroupList.h"
#include "qtService/management/systemfm/SystemFontDescriptor.h"

#include <QObject>
#include <QReadWriteLock>
#include <QSet>
#include <QSharedPointer>
#include <QStringList>

#include <atomic>

class FMSPdfGenerator;
class FontSampleJob;
class UpdateCheckCommand;
class FontAdder;
class KrvFeatureRepository;
class KrvFontRepository;
class KrvSimilarityWrapper;
class KrvUserDatabase;
class QThread;
class UserFontGroupList;

using FontSampleJobPtr = QSharedPointer<FontSampleJob>;
using UpdateCheckCommandPtr = QSharedPointer<UpdateCheckCommand>;

// The owner of the library at run time: databases, repositories, groups, adder, similarity. It lives in a thread of its
// own from construction on; start() opens everything there and started() tells when it may be used; stop() closes it
// again, and it may be started anew.
//
// Every operation may be called directly from any thread while the service is started; commands come back unstarted.
// Groups and the repository live in the main thread, where their signals arrive. Outside the started state operations
// answer with null pointers, false and 0.
class FontManagementService : public QObject
{
    Q_OBJECT

public:
    enum ErrorType
    {
        NoError = 0,
        TooManyFilesForOnlineSource = 1, // nothing is added
        OnlineSourcePathIsFolder = 2,    // nothing is added
        OnlineInfoNotWritten = 3         // the path is added all the same
    };
    Q_ENUM(ErrorType)

    FontManagementService();
    // Stops first when started. Called from another thread than the service's own.
    ~FontManagementService() override;

    QSharedPointer<FontAdder> fontAdder() const;
    QSharedPointer<KrvFontRepository> repository() const;
    QSharedPointer<KrvFeatureRepository> featureRepository() const;
    KrvUserDatabase* userDatabase() const;
    KrvSimilarityWrapper* similarityWrapper() const;
    QSharedPointer<SystemFontGroupList> systemFontGroups() const;
    QSharedPointer<UserFontGroupList> userFontGroups() const;

    // What the last start found of the catalogue's file, and where it has put one that could not serve.
    FontDatabase::FileState catalogueState() const;
    QString setAsideCatalogue() const;

signals:
    void startRequested();
    void stopRequested();
    void started();
    void stopped();

public slots:
    FontManagementService::ErrorType addFonts(QStringList filePaths, QString onlineSource, int onlineId);
    FontManagementService::ErrorType addFonts(QStringList filePaths, QString onlineSource);
    FontManagementService::ErrorType addFonts(QStringList filePaths);
    // Adds everything the system, the last replaced catalogue, the scan paths and the imported archives know of.
    void rescanFonts();
    ClearDatabaseCommandPtr clearDatabase();
    SetFontsHiddenCommandPtr setFontsHidden(QList<int> fontIdList, bool hidden);
    RemoveFontsCommandPtr removeFonts(QList<int> fontIdList);
    // The id of the new group; 0 when it has no name or could not be made.
    int addGroup(QString groupName);
    bool removeGroup(int groupId);
    CloneGroupCommandPtr cloneGroup(int groupId, QString groupName);
    bool renameGroup(int groupId, QString groupName);
    AddFontsToGroupsCommandPtr addFontsToGroups(QList<int> groupIdList, QList<int> fontIdList);
    RemoveFontsFromGroupsCommandPtr removeFontsFromGroups(QList<int> groupIdList, QList<int> fontIdList);
    bool clearGroup(int groupId);
    SetOnlineSourceCommandPtr setFontsOnlineSource(QList<int> fontIdList, QString onlineSource, int onlineId);
    ClearOnlineSourceCommandPtr clearFontsOnlineSource(QList<int> fontIdList);
    FontSampleJobPtr createFontSampleForAllFonts(QString saveFileName, QString sampleText);
    FontSampleJobPtr createFontSampleForFonts(QList<int> fontIdList, QString saveFileName, QString sampleText);
    FontSampleJobPtr createFontSampleSheetFotFonts(QList<int> fontIdList, QString saveFileName, QString sampleText);
    ExportFontsCommandPtr exportFonts(QString fileName, QList<int> fontIdList);
    ExportFontsCommandPtr exportAllFonts(QString fileName);
    ExtractFontArchiveCommandPtr extractFontArchive(QString fileName, QString destPath, bool isPurchased);
    // Into folders of the library; the caller adds them.
    ImportFontArchivesCommandPtr importFontArchives(QStringList fileNames);
    FontActivityChangeCommandPtr setFontActivityType(QList<int> fontIdList,
                                                     kerval::systemfm::ActivityType activityType);
    SimilarFontsGroupPtr similarFontsGroup(int fontId, int resultLimit, QList<int> fontIdList,
                                           SimilarFontsGroup::SimilarityMethod method);
    // A group of its own with another limit; null for a group that is not one of the three recent ones.
    FontGroupPtr createRecentLimitedFontGroup(SystemFontGroupList::GroupId groupId, int recentLimit);
    UpdateFileExistsCommandPtr updateFileExistance();
    ExistingFontsGroupPtr existingFontsGroup();
    UpdateCheckCommandPtr createUpdateCheckCommand();
    void start();
    bool isStarted();
    void stop();

private slots:
    void startPriv();
    void stopPriv();
    void onActiveFontsChanged();

private:
    // The members that operations use, taken together; all null outside the started state.
    struct Library
    {
        QSharedPointer<FontAdder> fontAdder;
        QSharedPointer<KrvFontRepository> repository;
        QSharedPointer<KrvFeatureRepository> featureRepository;
        KrvUserDatabase* userDatabase = nullptr;
        KrvSimilarityWrapper* similarity = nullptr;
        QSharedPointer<SystemFontGroupList> systemGroups;
    };
    Library library() const;

    void openDatabases(const QString& settingsFolder);
    void openPrograms(const QString& settingsFolder);
    void openGroups();
    void closeLibrary();
    QStringList unknownFontFiles(const QSet<kerval::systemfm::SystemFontDescriptor>& current) const;
    ExportFontsCommandPtr exportCommand(const QString& fileName, const QList<StaticFontPtr>& fonts) const;
    FontSampleJobPtr createFontSample(const QList<int>& ids, const QString& saveFileName, const QString& sampleText,
                                      int kind);

    QThread* m_thread;
    mutable QReadWriteLock m_lock; // guards the members below
    QSharedPointer<FontAdder> m_fontAdder;
    QSharedPointer<FontDatabase> m_fontDatabase;
    FontDatabase::FileState m_catalogueState = FontDatabase::Created;
    QString m_setAsideCatalogue;
    QSharedPointer<KrvFontRepository> m_repository;
    QSharedPointer<KrvFeatureRepository> m_featureRepository;
    KrvUserDatabase* m_userDatabase = nullptr;
    KrvSimilarityWrapper* m_similarity = nullptr;
    QSharedPointer<SystemFontGroupList> m_systemGroups;
    QSharedPointer<UserFontGroupList> m_userGroups;
    QSharedPointer<ExistingFontsGroup> m_existingFonts;
    QSet<kerval::systemfm::SystemFontDescriptor> m_activeFonts;
    std::atomic<bool> m_isStarted{false};
    FMSPdfGenerator* m_pdfGenerator = nullptr; // a child, made and used in the service's thread
};
