#include "qtService/app/service/FontManagementService.h"

#include "fontfile/KrvFontFile.h"
#include "qtService/app/core/SettingsFolders.h"
#include "qtService/app/service/NewFontsFilterFunctor.h"
#include "qtService/database/CachedFontRepositoryStrategy.h"
#include "qtService/database/KrvFeatureRepository.h"
#include "qtService/database/KrvFontRepository.h"
#include "qtService/database/KrvUserDatabase.h"
#include "qtService/database/RelationalFeatureRepositoryStrategy.h"
#include "qtService/database/RelationalFontRepositoryStrategy.h"
#include "qtService/management/ActiveFontsGroup.h"
#include "qtService/management/AllFontsGroup.h"
#include "qtService/management/DuplicateFontsGroup.h"
#include "qtService/management/FindFontFilesCommand.h"
#include "qtService/management/FontAdder.h"
#include "qtService/management/HiddenFontsGroup.h"
#include "qtService/management/InactiveFontsGroup.h"
#include "qtService/management/KrvSimilarityWrapper.h"
#include "qtService/management/RecentlyActivatedFontsGroup.h"
#include "qtService/management/RecentlyAddedFontsGroup.h"
#include "qtService/management/RecentlyDeactivatedFontsGroup.h"
#include "qtService/management/SystemFontsGroup.h"
#include "qtService/management/UserFontGroupList.h"
#include "qtService/management/systemfm/SystemFontManager.h"

#include <QCoreApplication>
#include <QThread>
#include <QThreadPool>
#include <QtConcurrentFilter>

using kerval::systemfm::SystemFontDescriptor;
using kerval::systemfm::SystemFontManager;

namespace {

constexpr int recentLimit = 100;
// Commands that are under way when the service stops use what it is about to delete.
constexpr int commandsTimeout = 30000;

QSet<SystemFontDescriptor> activeFontSet()
{
    const QList<SystemFontDescriptor> fonts = SystemFontManager::instance()->activeFonts();
    return QSet<SystemFontDescriptor>(fonts.begin(), fonts.end());
}

} // namespace

FontManagementService::FontManagementService()
    : m_thread(new QThread)
{
    m_thread->setObjectName(QStringLiteral("FontManagementService"));
    m_thread->start(QThread::InheritPriority);
    moveToThread(m_thread);
    connect(this, &FontManagementService::startRequested, this, &FontManagementService::startPriv,
            Qt::QueuedConnection);
    connect(this, &FontManagementService::stopRequested, this, &FontManagementService::stopPriv, Qt::QueuedConnection);
}

FontManagementService::~FontManagementService()
{
    // Behind every start and stop that was asked for before.
    QMetaObject::invokeMethod(this, &FontManagementService::stopPriv, Qt::BlockingQueuedConnection);
    m_thread->quit();
    m_thread->wait();
    delete m_thread;
}

void FontManagementService::start()
{
    emit startRequested();
}

bool FontManagementService::isStarted()
{
    return m_isStarted;
}

void FontManagementService::stop()
{
    emit stopRequested();
}

void FontManagementService::startPriv()
{
    if (m_isStarted)
        return;
    const QString settingsFolder = krv::userSettingsFolder();
    ArchivesFolder(ArchivesFolder::userPath()).removeLeftovers();
    openDatabases(settingsFolder);
    openPrograms(settingsFolder);
    openGroups();

    SystemFontManager* const manager = SystemFontManager::instance();
    connect(manager, &SystemFontManager::activeFontsChanged, this, &FontManagementService::onActiveFontsChanged,
            Qt::QueuedConnection);
    {
        const QSet<SystemFontDescriptor> active = activeFontSet();
        QWriteLocker locker(&m_lock);
        m_activeFonts = active;
    }

    const UpdateFileExistsCommandPtr update = updateFileExistance();
    update->start();
    update->waitForFinished();

    m_isStarted = true;
    emit started();
}

// Everything is made outside the lock, which no caller shall wait for while a catalogue loads.
void FontManagementService::openDatabases(const QString& settingsFolder)
{
    auto* const userDatabase = new KrvUserDatabase;
    userDatabase->open(settingsFolder + QStringLiteral("user.db"));
    // What cannot serve as the catalogue is moved aside, and its fonts wait for the next scan.
    QString setAside;
    FontDatabase::FileState state = FontDatabase::prepareFile(settingsFolder + QStringLiteral("fms.db"), &setAside);
    const auto fontDatabase = QSharedPointer<FontDatabase>::create(settingsFolder + QStringLiteral("fms.db"));
    const auto strategy = QSharedPointer<CachedFontRepositoryStrategy>::create(
        QSharedPointer<RelationalFontRepositoryStrategy>::create(fontDatabase));
    const auto repository = QSharedPointer<KrvFontRepository>::create(strategy, userDatabase);
    KrvFontRepository::setInstance(repository);
    const auto features = QSharedPointer<KrvFeatureRepository>::create(
        QSharedPointer<RelationalFeatureRepositoryStrategy>::create(fontDatabase));

    // Reading it may have shown what the look at the file did not.
    if (state == FontDatabase::Opened || fontDatabase->fileState() == FontDatabase::CannotOpen)
        state = fontDatabase->fileState();
    if (setAside.isEmpty())
        setAside = fontDatabase->movedFileName();

    QWriteLocker locker(&m_lock);
    m_catalogueState = state;
    m_setAsideCatalogue = setAside;
    m_userDatabase = userDatabase;
    m_fontDatabase = fontDatabase;
    m_repository = repository;
    m_featureRepository = features;
}

void FontManagementService::openPrograms(const QString& settingsFolder)
{
    const QString programs = QCoreApplication::applicationDirPath();
    const QString features = settingsFolder.isEmpty() ? QString() : settingsFolder + QStringLiteral("features");
    auto* const similarity = new KrvSimilarityWrapper(
        programs + QStringLiteral("/krvextractfeatures.exe"), programs + QStringLiteral("/krvfindsimilar.exe"),
        features, m_repository, m_fontDatabase->databaseFileName(), 1, QString(), QString());
    // Feature files of another catalogue, or of fonts that are gone, must not be searched.
    if (m_fontDatabase->fileState() != FontDatabase::Opened)
        similarity->clearFeatures();
    // At once: whoever hears of the removal and searches must not have places taken by what is gone.
    connect(
        m_repository.data(), &KrvFontRepository::fontsRemoved, similarity,
        [similarity] { similarity->clearFeatures(); }, Qt::DirectConnection);
    const auto adder = QSharedPointer<FontAdder>::create(programs + QStringLiteral("/krvfontadder.exe"), similarity,
                                                         m_userDatabase, m_repository, m_featureRepository);

    QWriteLocker locker(&m_lock);
    m_similarity = similarity;
    m_fontAdder = adder;
}

void FontManagementService::openGroups()
{
    const auto existing = makeFontGroup<ExistingFontsGroup>(m_repository);
    const auto all = makeFontGroup<AllFontsGroup>(existing);
    const auto systemGroups = makeFontGroupList<SystemFontGroupList>();
    systemGroups->addGroup(SystemFontGroupList::AllFonts, all);
    systemGroups->addGroup(SystemFontGroupList::ActiveFonts, makeFontGroup<ActiveFontsGroup>(all));
    systemGroups->addGroup(SystemFontGroupList::InactiveFonts, makeFontGroup<InactiveFontsGroup>(all));
    systemGroups->addGroup(SystemFontGroupList::SystemFonts, makeFontGroup<SystemFontsGroup>(all));
    systemGroups->addGroup(SystemFontGroupList::DuplicateFonts, makeFontGroup<DuplicateFontsGroup>(all));
    systemGroups->addGroup(SystemFontGroupList::RecentlyAddedFonts,
                           makeFontGroup<RecentlyAddedFontsGroup>(all, recentLimit));
    systemGroups->addGroup(SystemFontGroupList::RecentlyActivatedFonts,
                           makeFontGroup<RecentlyActivatedFontsGroup>(all, recentLimit));
    systemGroups->addGroup(SystemFontGroupList::RecentlyDeactivatedFonts,
                           makeFontGroup<RecentlyDeactivatedFontsGroup>(all, recentLimit));
    systemGroups->addGroup(SystemFontGroupList::HiddenFonts, makeFontGroup<HiddenFontsGroup>(existing));
    const auto userGroups = makeFontGroupList<UserFontGroupList>(all, m_userDatabase);

    QWriteLocker locker(&m_lock);
    m_existingFonts = existing;
    m_systemGroups = systemGroups;
    m_userGroups = userGroups;
}

void FontManagementService::stopPriv()
{
    if (!m_isStarted)
        return;
    disconnect(SystemFontManager::instance(), nullptr, this, nullptr);
    closeLibrary();
    m_isStarted = false;
    emit stopped();
}

void FontManagementService::closeLibrary()
{
    Library closing;
    QSharedPointer<FontDatabase> fontDatabase;
    QSharedPointer<UserFontGroupList> userGroups;
    QSharedPointer<ExistingFontsGroup> existingFonts;
    {
        QWriteLocker locker(&m_lock);
        m_activeFonts.clear();
        closing.fontAdder.swap(m_fontAdder);
        closing.repository.swap(m_repository);
        closing.featureRepository.swap(m_featureRepository);
        std::swap(closing.userDatabase, m_userDatabase);
        std::swap(closing.similarity, m_similarity);
        closing.systemGroups.swap(m_systemGroups);
        fontDatabase.swap(m_fontDatabase);
        userGroups.swap(m_userGroups);
        existingFonts.swap(m_existingFonts);
    }
    // The groups that a window still shows take the repository with them, on the main thread and any time after this.
    // Nothing may run it here by then, so it is cut off from what calls it on this thread.
    disconnect(SystemFontManager::instance(), nullptr, closing.repository.data(), nullptr);
    QCoreApplication::removePostedEvents(closing.repository.data());
    closing.fontAdder->shutDown();
    closing.fontAdder.reset();
    if (!QThreadPool::globalInstance()->waitForDone(commandsTimeout))
        qWarning("E_0_ Commands are still running while the library is closed");
    delete closing.similarity;
    KrvFontRepository::setInstance({});
    userGroups.reset();
    closing.systemGroups.reset();
    existingFonts.reset();
    closing.featureRepository.reset();
    closing.repository.reset();
    fontDatabase.reset();
    delete closing.userDatabase;
}

void FontManagementService::onActiveFontsChanged()
{
    const QSet<SystemFontDescriptor> current = activeFontSet();
    {
        QReadLocker locker(&m_lock);
        if (!m_repository || (!m_activeFonts.isEmpty() && m_activeFonts == current))
            return;
    }
    const QStringList files = unknownFontFiles(current);
    if (!files.isEmpty())
        library().fontAdder->addFontsFromPaths(files);
    QWriteLocker locker(&m_lock);
    m_activeFonts = current;
}

// Files that have become active and are fonts to catalogue.
QStringList FontManagementService::unknownFontFiles(const QSet<SystemFontDescriptor>& current) const
{
    QList<SystemFontDescriptor> added;
    QSharedPointer<KrvFontRepository> repository;
    {
        QReadLocker locker(&m_lock);
        repository = m_repository;
        for (const SystemFontDescriptor& font : current)
            if (!m_activeFonts.contains(font))
                added.append(font);
    }
    const QList<QString> catalogued = repository->fileFaces().keys();
    const NewFontsFilterFunctor isUnknown(QSet<QString>(catalogued.begin(), catalogued.end()));

    QStringList files;
    for (const SystemFontDescriptor& font : QtConcurrent::blockingFiltered(added, isUnknown)) {
        KrvFontFile file(font.fileName);
        const bool isOpen = file.open(0);
        if (!isOpen || !FindFontFilesCommand::hasPostScriptName(file)) {
            qDebug("M_1_ Failed to open %s %s", qUtf8Printable(font.fileName),
                   isOpen ? "bad tables and/or PS name" : "");
            continue;
        }
        qDebug("M_1_ NEW FONTS DETECTED: %s %s", qUtf8Printable(font.fileName), qUtf8Printable(font.fontName));
        files.append(font.fileName);
    }
    return files;
}

FontManagementService::Library FontManagementService::library() const
{
    QReadLocker locker(&m_lock);
    return {m_fontAdder, m_repository, m_featureRepository, m_userDatabase, m_similarity, m_systemGroups};
}

FontDatabase::FileState FontManagementService::catalogueState() const
{
    QReadLocker locker(&m_lock);
    return m_catalogueState;
}

QString FontManagementService::setAsideCatalogue() const
{
    QReadLocker locker(&m_lock);
    return m_setAsideCatalogue;
}

QSharedPointer<FontAdder> FontManagementService::fontAdder() const
{
    return library().fontAdder;
}

QSharedPointer<KrvFontRepository> FontManagementService::repository() const
{
    return library().repository;
}

QSharedPointer<KrvFeatureRepository> FontManagementService::featureRepository() const
{
    return library().featureRepository;
}

KrvUserDatabase* FontManagementService::userDatabase() const
{
    return library().userDatabase;
}

KrvSimilarityWrapper* FontManagementService::similarityWrapper() const
{
    return library().similarity;
}

QSharedPointer<SystemFontGroupList> FontManagementService::systemFontGroups() const
{
    return library().systemGroups;
}

QSharedPointer<UserFontGroupList> FontManagementService::userFontGroups() const
{
    QReadLocker locker(&m_lock);
    return m_userGroups;
}

ExistingFontsGroupPtr FontManagementService::existingFontsGroup()
{
    QReadLocker locker(&m_lock);
    return m_existingFonts;
}
