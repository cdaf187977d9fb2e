#include "qtService/app/service/FontManagementService.h"

#include "fontfile/KrvFontFile.h"
#include "qtService/app/core/OnlineInfo.h"
#include "qtService/app/core/SettingsFolders.h"
#include "qtService/database/KrvFontRepository.h"
#include "qtService/database/KrvUserDatabase.h"
#include "qtService/database/MatchingCriteria.h"
#include "qtService/database/StaticFont.h"
#include "qtService/management/FontAdder.h"
#include "qtService/management/RecentlyActivatedFontsGroup.h"
#include "qtService/management/RecentlyAddedFontsGroup.h"
#include "qtService/management/RecentlyDeactivatedFontsGroup.h"
#include "qtService/management/systemfm/SystemFontManager.h"
#include "updates/UpdateCheckCommand.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

// The fonts of a catalogue that was replaced, one path a line up to the first empty one; they are handed on once.
QStringList takeReplacedCatalogue()
{
    QStringList paths;
    QFile file(krv::userSettingsFolder() + QStringLiteral("olddbfontfiles.ev"));
    if (!file.open(QIODevice::ReadOnly))
        return paths;
    while (!file.atEnd()) {
        QByteArray line = file.readLine();
        while (line.endsWith('\n') || line.endsWith('\r'))
            line.chop(1);
        if (line.isEmpty())
            break;
        paths.append(QString::fromUtf8(line));
    }
    file.remove();
    return paths;
}

} // namespace

FontManagementService::ErrorType FontManagementService::addFonts(QStringList filePaths, QString onlineSource,
                                                                 int onlineId)
{
    const QSharedPointer<FontAdder> adder = fontAdder();
    if (!adder)
        return NoError;
    ErrorType result = NoError;
    if (!onlineSource.isEmpty() || onlineId != 0) {
        if (filePaths.size() != 1)
            return TooManyFilesForOnlineSource;
        if (QFileInfo(filePaths.first()).isDir())
            return OnlineSourcePathIsFolder;
        if (!krv::writeOnlineInfo(filePaths.first(), onlineId, onlineSource, QDateTime::currentDateTime(), false))
            result = OnlineInfoNotWritten;
    }
    adder->addFontsFromPaths(filePaths);
    return result;
}

FontManagementService::ErrorType FontManagementService::addFonts(QStringList filePaths, QString onlineSource)
{
    return addFonts(filePaths, onlineSource, 0);
}

FontManagementService::ErrorType FontManagementService::addFonts(QStringList filePaths)
{
    return addFonts(filePaths, QString(), 0);
}

void FontManagementService::rescanFonts()
{
    if (!fontAdder())
        return;
    auto* const manager = kerval::systemfm::SystemFontManager::instance();
    QStringList paths;
    for (const kerval::systemfm::SystemFontDescriptor& font : manager->activeFonts())
        paths.append(font.fileName);
    paths.append(manager->installedFontFiles());
    paths.append(takeReplacedCatalogue());
    paths.append(FontAdder::scanPaths());
    // Nobody else knows of what the library has unpacked for itself.
    if (QFileInfo(ArchivesFolder::userPath()).isDir())
        paths.append(ArchivesFolder::userPath());
    paths.removeDuplicates();
    addFonts(paths, QString(), 0);
}

ClearDatabaseCommandPtr FontManagementService::clearDatabase()
{
    const Library library = this->library();
    if (!library.repository)
        return {};
    return ClearDatabaseCommandPtr::create(library.fontAdder, library.repository, library.featureRepository);
}

SetFontsHiddenCommandPtr FontManagementService::setFontsHidden(QList<int> fontIdList, bool hidden)
{
    const Library library = this->library();
    if (!library.repository)
        return {};
    return SetFontsHiddenCommandPtr::create(fontIdList, hidden, library.repository);
}

RemoveFontsCommandPtr FontManagementService::removeFonts(QList<int> fontIdList)
{
    const Library library = this->library();
    if (!library.repository)
        return {};
    return RemoveFontsCommandPtr::create(fontIdList, library.repository, library.featureRepository);
}

int FontManagementService::addGroup(QString groupName)
{
    KrvUserDatabase* const database = userDatabase();
    return database && !groupName.isEmpty() ? database->addGroup(groupName, 0) : 0;
}

bool FontManagementService::removeGroup(int groupId)
{
    KrvUserDatabase* const database = userDatabase();
    return database && database->removeGroup(groupId);
}

CloneGroupCommandPtr FontManagementService::cloneGroup(int groupId, QString groupName)
{
    KrvUserDatabase* const database = userDatabase();
    if (!database)
        return {};
    return CloneGroupCommandPtr::create(database, groupId, groupName);
}

bool FontManagementService::renameGroup(int groupId, QString groupName)
{
    KrvUserDatabase* const database = userDatabase();
    return database && !groupName.isEmpty() && database->renameGroup(groupId, groupName);
}

AddFontsToGroupsCommandPtr FontManagementService::addFontsToGroups(QList<int> groupIdList, QList<int> fontIdList)
{
    const Library library = this->library();
    if (!library.repository)
        return {};
    return AddFontsToGroupsCommandPtr::create(library.repository, library.userDatabase, groupIdList, fontIdList);
}

RemoveFontsFromGroupsCommandPtr FontManagementService::removeFontsFromGroups(QList<int> groupIdList,
                                                                             QList<int> fontIdList)
{
    const Library library = this->library();
    if (!library.repository)
        return {};
    return RemoveFontsFromGroupsCommandPtr::create(library.repository, library.userDatabase, groupIdList, fontIdList);
}

bool FontManagementService::clearGroup(int groupId)
{
    KrvUserDatabase* const database = userDatabase();
    return database && database->clearGroup(groupId);
}

SetOnlineSourceCommandPtr FontManagementService::setFontsOnlineSource(QList<int> fontIdList, QString onlineSource,
                                                                      int onlineId)
{
    const Library library = this->library();
    if (!library.repository)
        return {};
    return SetOnlineSourceCommandPtr::create(fontIdList, onlineSource, onlineId, library.repository);
}

ClearOnlineSourceCommandPtr FontManagementService::clearFontsOnlineSource(QList<int> fontIdList)
{
    const Library library = this->library();
    if (!library.repository)
        return {};
    return ClearOnlineSourceCommandPtr::create(fontIdList, library.repository);
}

ExportFontsCommandPtr FontManagementService::exportFonts(QString fileName, QList<int> fontIdList)
{
    const Library library = this->library();
    if (!library.repository)
        return {};
    return exportCommand(fileName, library.repository->findMatchingFonts(MatchingCriteria::idIn(fontIdList)));
}

ExportFontsCommandPtr FontManagementService::exportAllFonts(QString fileName)
{
    const Library library = this->library();
    if (!library.repository)
        return {};
    return exportCommand(fileName, library.repository->fonts());
}

// Two faces of a collection are one file; a Type 1 font is two.
ExportFontsCommandPtr FontManagementService::exportCommand(const QString& fileName,
                                                           const QList<StaticFontPtr>& fonts) const
{
    QStringList paths;
    for (const StaticFontPtr& font : fonts) {
        const QString path = font->fileName();
        paths.append(QDir::toNativeSeparators(path));
        if (KrvFontFile::formatFromFileName(path) == KrvFontFile::FormatPfm) {
            const QString outlines = KrvFontFile::companionFileName(path, KrvFontFile::FormatPfb);
            paths.append(QDir::toNativeSeparators(outlines));
        }
    }
    paths.removeDuplicates();
    return ExportFontsCommandPtr::create(ZipArchive(fileName, QString()), paths);
}

ExtractFontArchiveCommandPtr FontManagementService::extractFontArchive(QString fileName, QString destPath,
                                                                       bool isPurchased)
{
    return ExtractFontArchiveCommandPtr::create(ZipArchive(fileName, QString()), destPath, isPurchased);
}

ImportFontArchivesCommandPtr FontManagementService::importFontArchives(QStringList fileNames)
{
    return ImportFontArchivesCommandPtr::create(fileNames, ArchivesFolder::userPath());
}

FontActivityChangeCommandPtr FontManagementService::setFontActivityType(QList<int> fontIdList,
                                                                        kerval::systemfm::ActivityType activityType)
{
    const Library library = this->library();
    if (!library.repository)
        return {};
    return FontActivityChangeCommandPtr::create(
        library.repository, library.systemGroups->group(SystemFontGroupList::SystemFonts), fontIdList, activityType);
}

SimilarFontsGroupPtr FontManagementService::similarFontsGroup(int fontId, int resultLimit, QList<int> fontIdList,
                                                              SimilarFontsGroup::SimilarityMethod method)
{
    const Library library = this->library();
    if (!library.repository)
        return {};
    const QSharedPointer<FontGroup> all = library.systemGroups->group(SystemFontGroupList::AllFonts);
    return makeFontGroup<SimilarFontsGroup>(all, library.similarity, fontId, resultLimit, fontIdList, method);
}

FontGroupPtr FontManagementService::createRecentLimitedFontGroup(SystemFontGroupList::GroupId groupId, int recentLimit)
{
    const Library library = this->library();
    if (!library.repository)
        return {};
    const QSharedPointer<FontGroup> all = library.systemGroups->group(SystemFontGroupList::AllFonts);
    switch (groupId) {
    case SystemFontGroupList::RecentlyAddedFonts:
        return makeFontGroup<RecentlyAddedFontsGroup>(all, recentLimit);
    case SystemFontGroupList::RecentlyActivatedFonts:
        return makeFontGroup<RecentlyActivatedFontsGroup>(all, recentLimit);
    case SystemFontGroupList::RecentlyDeactivatedFonts:
        return makeFontGroup<RecentlyDeactivatedFontsGroup>(all, recentLimit);
    default:
        return {};
    }
}

UpdateFileExistsCommandPtr FontManagementService::updateFileExistance()
{
    const Library library = this->library();
    if (!library.repository)
        return {};
    return UpdateFileExistsCommandPtr::create(library.repository);
}

UpdateCheckCommandPtr FontManagementService::createUpdateCheckCommand()
{
    return UpdateCheckCommandPtr::create();
}
