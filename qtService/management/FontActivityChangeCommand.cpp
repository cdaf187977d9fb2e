#include "qtService/management/FontActivityChangeCommand.h"

#include "qtService/database/KrvFontRepository.h"
#include "qtService/database/MatchingCriteria.h"
#include "qtService/management/FontGroup.h"
#include "qtService/management/systemfm/SystemFontManager.h"

#include <QDateTime>

using kerval::systemfm::ActivityType;
using kerval::systemfm::FontManagerStrategyInterface;
using kerval::systemfm::SystemFontManager;

FontActivityChangeCommand::FontActivityChangeCommand(const QSharedPointer<KrvFontRepository>& repository,
                                                     const QSharedPointer<FontGroup>& systemFontsGroup,
                                                     const QList<int>& fontIds, ActivityType activityType)
    : FontActivityChangeCommand(repository, systemFontsGroup, fontIds, activityType, SystemFontManager::instance())
{
}

FontActivityChangeCommand::FontActivityChangeCommand(const QSharedPointer<KrvFontRepository>& repository,
                                                     const QSharedPointer<FontGroup>& systemFontsGroup,
                                                     const QList<int>& fontIds, ActivityType activityType,
                                                     SystemFontManager* manager)
    : AbstractAsynchronousCommand(fontIds.size())
    , m_repository(repository)
    , m_systemFontsGroup(systemFontsGroup)
    , m_fontIds(fontIds)
    , m_activityType(activityType)
    , m_manager(manager)
{
}

FontActivityChangeCommand::~FontActivityChangeCommand()
{
    waitForFinished();
}

QHash<int, ActivityChangeResult> FontActivityChangeCommand::results() const
{
    QReadLocker lock(&m_lock);
    return m_results;
}

StaticFontPtr FontActivityChangeCommand::currentFont() const
{
    QReadLocker lock(&m_lock);
    return m_currentFont;
}

// A cancellation from before the start is not looked for: every change is an explicit request. One that comes while the
// batch runs keeps what is done and leaves the rest alone.
void FontActivityChangeCommand::operator()()
{
    m_startedCancelled = state() == Cancelled;
    setState(Running);
    setProgressTotal(m_fontIds.size());
    const QList<File> files = collectFiles();
    storeActivity(changeFiles(files));
    setState(Finished);
}

QList<FontActivityChangeCommand::File> FontActivityChangeCommand::collectFiles()
{
    QList<File> files;
    QHash<QString, int> places;
    for (const int fontId : qAsConst(m_fontIds)) {
        setResult(fontId, fms::NotProcessed);
        const StaticFontPtr font = m_repository->font(fontId);
        if (!font) {
            setResult(fontId, fms::FontNotFound);
            continue;
        }
        const QString name = font->fileName();
        if (name.isEmpty()) {
            setResult(fontId, fms::FontFileNameEmpty);
            continue;
        }
        if (!places.contains(name)) {
            places.insert(name, files.size());
            files.append(File{name, {}, {}});
        }
        QList<StaticFontPtr>& asked = files[places.value(name)].asked;
        if (!asked.contains(font))
            asked.append(font);
    }
    for (File& file : files) {
        const QList<int> ids = m_repository->fontIdsForFile(file.name);
        for (const int id : ids) {
            if (const StaticFontPtr font = m_repository->font(id))
                file.all.append(font);
        }
        for (const StaticFontPtr& font : qAsConst(file.asked)) {
            if (!file.all.contains(font))
                file.all.append(font);
        }
    }
    return files;
}

// One query for the whole batch: the catalogue does not change before the batch is stored, and a query for each font
// would walk the catalogue a thousand times for a thousand fonts.
QMultiHash<QString, StaticFontPtr> FontActivityChangeCommand::activeFontsNamedAlike(const QList<File>& files) const
{
    QSet<QString> names;
    for (const File& file : files) {
        for (const StaticFontPtr& font : file.asked)
            names.insert(font->postScriptName());
    }
    names.remove(QString());
    QMultiHash<QString, StaticFontPtr> active;
    if (names.isEmpty())
        return active;
    const auto criteria = MatchingCriteria::allOf({
        MatchingCriteria::leaf(MatchingCriteria::InList, QStringLiteral("postScriptName"), QStringList(names.values())),
        MatchingCriteria::leaf(MatchingCriteria::NotEqual, QStringLiteral("activityType"),
                               int(kerval::systemfm::Inactive)),
        MatchingCriteria::leaf(MatchingCriteria::Equal, QStringLiteral("fileExists"), true),
    });
    const QList<StaticFontPtr> fonts = m_repository->findMatchingFonts(criteria);
    for (const StaticFontPtr& font : fonts)
        active.insert(font->postScriptName(), font);
    return active;
}

// The asked fonts of the file whose names are free. Fonts without a PostScript name cannot be confused by it.
QList<StaticFontPtr> FontActivityChangeCommand::withoutConflicts(const File& file,
                                                                 const QMultiHash<QString, StaticFontPtr>& active,
                                                                 QHash<QString, StaticFontPtr>& acceptedNames)
{
    QList<StaticFontPtr> accepted;
    for (const StaticFontPtr& font : file.asked) {
        const QString name = font->postScriptName();
        StaticFontPtr other;
        if (!name.isEmpty()) {
            other = acceptedNames.value(name);
            if (other && other->fileName() == file.name)
                other.reset();
            const QList<StaticFontPtr> alike = other ? QList<StaticFontPtr>() : active.values(name);
            for (const StaticFontPtr& candidate : alike) {
                if (candidate->fileName() != file.name)
                    other = candidate;
            }
        }
        if (other) {
            setResult(font->id(), fms::ActivationConflict, other->id());
            continue;
        }
        accepted.append(font);
        acceptedNames.insert(name, font);
    }
    return accepted;
}

// A file goes as a whole: one protected face keeps it. Activating a protected font only until the session ends would
// switch it off in the next, so that is refused like switching it off now.
bool FontActivityChangeCommand::refuseProtected(const File& file)
{
    const bool isProtected =
        m_systemFontsGroup && std::any_of(file.all.cbegin(), file.all.cend(), [this](const StaticFontPtr& font) {
            return m_systemFontsGroup->containsFont(font->id());
        });
    if (isProtected) {
        for (const StaticFontPtr& font : file.asked)
            setResult(font->id(), fms::SystemFontProtected);
    }
    return isProtected;
}

int FontActivityChangeCommand::change(const QString& fileName, const QStringList& fontNames)
{
    QHash<QString, int> results;
    switch (m_activityType) {
    case kerval::systemfm::PermanentlyActive:
        results = m_manager->activatePermanently(fileName, fontNames);
        break;
    case kerval::systemfm::TemporarilyActive:
        results = m_manager->activateTemporarily(fileName, fontNames);
        break;
    case kerval::systemfm::Inactive:
        results = m_manager->deactivate(fileName, fontNames);
        break;
    }
    return results.isEmpty() ? int(FontManagerStrategyInterface::RegistrationFailed) : *results.cbegin();
}

// Returns the files that changed, the refused ones left out.
QList<FontActivityChangeCommand::File> FontActivityChangeCommand::changeFiles(const QList<File>& files)
{
    const bool activating = m_activityType != kerval::systemfm::Inactive;
    QMultiHash<QString, StaticFontPtr> active;
    if (activating)
        active = activeFontsNamedAlike(files);

    QHash<QString, StaticFontPtr> acceptedNames;
    QVector<QList<StaticFontPtr>> accepted(files.size());
    QHash<QString, int> outcomes;
    SystemFontManager::Batch batch(m_manager);
    for (int i = 0; i < files.size() && !isStoppedByUser(); ++i) {
        const File& file = files.at(i);
        setProgressCurrent(i);
        setCurrentFont(file.asked.constFirst());
        if (m_activityType != kerval::systemfm::PermanentlyActive && refuseProtected(file))
            continue;
        accepted[i] = activating ? withoutConflicts(file, active, acceptedNames) : file.asked;
        if (accepted.at(i).isEmpty())
            continue;
        QStringList names;
        for (const StaticFontPtr& font : qAsConst(accepted[i]))
            names.append(font->fullName().isEmpty() ? font->postScriptName() : font->fullName());
        outcomes.insert(file.name, change(file.name, names));
    }
    const QHash<QString, int> failedLater = batch.finish();
    for (auto failed = failedLater.cbegin(); failed != failedLater.cend(); ++failed)
        outcomes.insert(failed.key(), failed.value());
    if (!isStoppedByUser())
        setProgressCurrent(m_fontIds.size());
    setCurrentFont({});
    m_manager->notifyFontChange();

    QList<File> changed;
    for (int i = 0; i < files.size(); ++i) {
        if (accepted.at(i).isEmpty())
            continue;
        const int outcome = outcomes.value(files.at(i).name);
        const int error = outcome == FontManagerStrategyInterface::Done         ? fms::NoError
                          : outcome == FontManagerStrategyInterface::LoadFailed ? fms::ActivationConflict
                                                                                : fms::ActivationFailed;
        for (const StaticFontPtr& font : accepted.at(i))
            setResult(font->id(), error);
        if (error == fms::NoError)
            changed.append(files.at(i));
    }
    return changed;
}

void FontActivityChangeCommand::storeActivity(const QList<File>& changed)
{
    if (changed.isEmpty())
        return;
    const QDateTime now = QDateTime::currentDateTime();
    const QDateTime never = QDateTime::fromMSecsSinceEpoch(0);
    QList<StaticFontPtr> fonts;
    for (const File& file : changed) {
        for (const StaticFontPtr& font : file.all) {
            font->setActivityType(m_activityType);
            if (m_activityType != kerval::systemfm::Inactive)
                font->setDateActivated(now);
            font->setDateDeactivated(m_activityType == kerval::systemfm::Inactive ? now : never);
            fonts.append(font);
        }
    }
    m_repository->updateFonts(
        fonts, {QStringLiteral("dateActivated"), QStringLiteral("dateDeactivated"), QStringLiteral("activityType")});
}

bool FontActivityChangeCommand::isStoppedByUser() const
{
    return !m_startedCancelled && state() == Cancelled;
}

void FontActivityChangeCommand::setResult(int fontId, int error, int conflictingFontId)
{
    QWriteLocker lock(&m_lock);
    m_results.insert(fontId, ActivityChangeResult{fontId, error, conflictingFontId});
}

void FontActivityChangeCommand::setCurrentFont(const StaticFontPtr& font)
{
    {
        QWriteLocker lock(&m_lock);
        m_currentFont = font;
    }
    emit currentFontChanged();
}
