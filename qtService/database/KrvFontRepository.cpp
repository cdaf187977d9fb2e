#include "qtService/database/KrvFontRepository.h"

#include "qtService/database/FontRepositoryStrategy.h"
#include "qtService/database/KrvUserDatabase.h"
#include "qtService/database/RepositoryFindMathingFontsCommand.h"
#include "qtService/database/UserDatabaseTransaction.h"
#include "qtService/management/systemfm/SystemFontManager.h"

#include <QtConcurrent>

using kerval::systemfm::SystemFontDescriptor;
using kerval::systemfm::SystemFontManager;

namespace {

QString duplicateKey(const fms::StaticFont& font)
{
    return font.fileHash() + QString::number(font.faceIndex());
}

QList<int> idsOf(const QList<StaticFontPtr>& fonts)
{
    QList<int> ids;
    ids.reserve(fonts.size());
    for (const StaticFontPtr& font : fonts)
        ids.append(font->id());
    return ids;
}

// Keeps the records whose activity is another than the system says now, and corrects it.
class ActivityChangedFilterFunctor
{
public:
    using result_type = bool;

    explicit ActivityChangedFilterFunctor(const QSet<SystemFontDescriptor>& activeFonts)
        : m_activeFonts(activeFonts)
    {
    }

    bool operator()(const StaticFontPtr& font) const
    {
        const auto active = m_activeFonts.constFind(SystemFontDescriptor(font->fileName()));
        const int activityType = active == m_activeFonts.constEnd() ? 0 : int(active->activityType);
        if (font->activityType() == activityType)
            return false;
        font->setActivityType(activityType);
        return true;
    }

private:
    QSet<SystemFontDescriptor> m_activeFonts;
};

QMutex instanceMutex;
KrvFontRepositoryPtr publishedInstance;

} // namespace

KrvFontRepositoryPtr KrvFontRepository::instance()
{
    QMutexLocker locker(&instanceMutex);
    return publishedInstance;
}

void KrvFontRepository::setInstance(const KrvFontRepositoryPtr& repository)
{
    KrvFontRepositoryPtr previous = repository;
    QMutexLocker locker(&instanceMutex);
    publishedInstance.swap(previous);
}

KrvFontRepository::KrvFontRepository(const QSharedPointer<FontRepositoryStrategy>& strategy,
                                     KrvUserDatabase* userDatabase, SystemFontManager* systemFonts)
    : m_strategy(strategy)
    , m_userDatabase(userDatabase)
    , m_systemFonts(systemFonts ? systemFonts : SystemFontManager::instance())
{
    connect(m_systemFonts, &SystemFontManager::activeFontsChanged, this, &KrvFontRepository::updateActiveFontsList);
    connect(this, &FontCollectionInterface::fontsAdded, this, &FontCollectionInterface::fontCountChanged,
            Qt::DirectConnection);
    connect(this, &FontCollectionInterface::fontsRemoved, this, &FontCollectionInterface::fontCountChanged,
            Qt::DirectConnection);

    m_activeFonts = systemActiveFonts();
    m_foundries = m_strategy->foundries();
    const QList<StaticFontPtr> all = fonts();
    merge(m_activeFonts, all);

    m_duplicateKeys.reserve(all.size());
    QSet<QString> repeated;
    for (const StaticFontPtr& font : all) {
        const QString key = duplicateKey(*font);
        if (m_duplicateKeys.contains(key))
            repeated.insert(key);
        m_duplicateKeys.insert(key, font->id());
    }
    recountDuplicates(repeated);
}

KrvFontRepository::~KrvFontRepository() = default;

QList<StaticFontPtr> KrvFontRepository::fonts() const
{
    return m_strategy->fonts();
}

StaticFontPtr KrvFontRepository::font(int fontId) const
{
    return m_strategy->font(fontId);
}

QList<StaticFontPtr> KrvFontRepository::findMatchingFonts(const MatchingCriteriaPtr& criteria) const
{
    const auto command = createFindMathingFontsCommand(criteria, false);
    command->start();
    command->waitForFinished();
    return command->fonts();
}

QSharedPointer<FindMathingFontsCommand>
KrvFontRepository::createFindMathingFontsCommand(const MatchingCriteriaPtr& criteria, bool idsOnly) const
{
    return QSharedPointer<RepositoryFindMathingFontsCommand>::create(m_strategy, criteria, idsOnly);
}

QList<int> KrvFontRepository::findMatchingFontIds(const MatchingCriteriaPtr& criteria) const
{
    const auto command = createFindMathingFontsCommand(criteria, true);
    command->start();
    command->waitForFinished();
    return command->fontIds();
}

QList<int> KrvFontRepository::fontIdList() const
{
    return m_strategy->fontIdList();
}

bool KrvFontRepository::containsFont(const StaticFontPtr& font) const
{
    return font && containsFont(font->id());
}

bool KrvFontRepository::containsFont(int fontId) const
{
    return m_strategy->containsFont(fontId);
}

int KrvFontRepository::fontCount() const
{
    return m_strategy->fontCount();
}

bool KrvFontRepository::hasFonts() const
{
    return fontCount() > 0;
}

QStringList KrvFontRepository::foundries() const
{
    return m_strategy->foundries();
}

QHash<QString, QList<int>> KrvFontRepository::fileFaces() const
{
    return m_strategy->fileFaces();
}

QList<int> KrvFontRepository::fontIdsForFile(const QString& fileName) const
{
    return m_strategy->fontIdsForFile(fileName);
}

bool KrvFontRepository::addFonts(const QList<StaticFontPtr>& fonts, const std::function<bool()>& alongside)
{
    // Before anybody can see them.
    applyUserData(fonts);
    const bool allStored = m_strategy->addFonts(fonts, alongside);
    QList<StaticFontPtr> stored;
    stored.reserve(fonts.size());
    for (const StaticFontPtr& font : fonts) {
        if (font->id() != fms::StaticFont::NewId)
            stored.append(font);
    }
    if (!stored.isEmpty()) {
        // Counted before the fonts are announced, told after: receivers know the fonts by then.
        const QList<int> recounted = countDuplicates(stored, true);
        emit fontsAdded(idsOf(stored));
        announceChanged(recounted);
        refreshFoundries();
    }
    return allStored;
}

bool KrvFontRepository::removeFonts(const QList<StaticFontPtr>& fonts)
{
    if (fonts.isEmpty())
        return true;
    if (!m_strategy->removeFonts(fonts))
        return false;
    const QList<int> recounted = countDuplicates(fonts, false);
    emit fontsRemoved(idsOf(fonts));
    announceChanged(recounted);
    refreshFoundries();
    return true;
}

bool KrvFontRepository::removeFont(const StaticFontPtr& font)
{
    return font && removeFonts({font});
}

bool KrvFontRepository::removeAll()
{
    const QList<int> ids = m_strategy->fontIdList();
    {
        QMutexLocker duplicates(&m_duplicatesMutex);
        if (!m_strategy->removeAll())
            return false;
        QWriteLocker locker(&m_lock);
        m_duplicateKeys.clear();
    }
    emit fontsRemoved(ids);
    refreshFoundries();
    return true;
}

bool KrvFontRepository::updateFonts(const QList<StaticFontPtr>& fonts, const QStringList& changedProperties)
{
    // Neither user.db's fields nor what is found out anew at each start have a column that is read back.
    static const QSet<QString> notInCatalogue{QStringLiteral("isHidden"),
                                              QStringLiteral("userNote"),
                                              QStringLiteral("userRanking"),
                                              QStringLiteral("fileExists"),
                                              QStringLiteral("activityType"),
                                              QStringLiteral("duplicateCount"),
                                              QStringLiteral("userDefinedFamilyName")};
    if (fonts.isEmpty())
        return true;
    if (!storeUserData(fonts, changedProperties)) {
        applyUserData(fonts);
        return false;
    }
    if (changedProperties.contains(QStringLiteral("activityType")))
        storeActivity(fonts);
    const bool inCatalogue = std::any_of(changedProperties.cbegin(), changedProperties.cend(),
                                         [](const QString& name) { return !notInCatalogue.contains(name); });
    const bool stored = !inCatalogue || m_strategy->updateFonts(fonts);
    // The records carry the new values even when the catalogue refused them, so they are announced either way.
    emit fontsChanged(idsOf(fonts));
    return stored;
}

bool KrvFontRepository::storeUserData(const QList<StaticFontPtr>& fonts, const QStringList& changedProperties)
{
    // Fonts by the value they get: one statement batch for each value.
    const auto grouped = [&fonts](auto valueOf) {
        QHash<decltype(valueOf(*fonts.first())), QStringList> groups;
        for (const StaticFontPtr& font : fonts)
            groups[valueOf(*font)].append(font->fontHash());
        return groups;
    };
    const auto storeEach = [](const auto& groups, auto store) {
        for (auto it = groups.constBegin(); it != groups.constEnd(); ++it) {
            if (!store(it.value(), it.key()))
                return false;
        }
        return true;
    };
    const bool hidden = changedProperties.contains(QStringLiteral("isHidden"));
    const bool note = changedProperties.contains(QStringLiteral("userNote"));
    const bool ranking = changedProperties.contains(QStringLiteral("userRanking"));
    const bool family = changedProperties.contains(QStringLiteral("userDefinedFamilyName"));
    if (!hidden && !note && !ranking && !family)
        return true;

    using Hashes = QStringList;
    KrvUserDatabase& database = *m_userDatabase;
    UserDatabaseTransaction transaction(database);
    return (!hidden || storeEach(grouped([](const fms::StaticFont& font) { return font.isHidden(); }),
                                 [&](const Hashes& h, bool value) { return database.setHidden(h, value); })) &&
           (!note || storeEach(grouped([](const fms::StaticFont& font) { return font.userNote(); }),
                               [&](const Hashes& h, const QString& value) { return database.setNote(h, value); })) &&
           (!ranking || storeEach(grouped([](const fms::StaticFont& font) { return font.userRanking(); }),
                                  [&](const Hashes& h, int value) { return database.setRanking(h, value); })) &&
           (!family || storeEach(grouped([](const fms::StaticFont& font) { return font.userDefinedFamilyName(); }),
                                 [&](const Hashes& h, const QString& value) {
                                     return database.setUserDefinedFamilyName(h, value);
                                 })) &&
           transaction.commit();
}

void KrvFontRepository::storeActivity(const QList<StaticFontPtr>& fonts)
{
    QWriteLocker locker(&m_lock);
    for (const StaticFontPtr& font : fonts) {
        const SystemFontDescriptor active(font->fileName(), kerval::systemfm::ActivityType(font->activityType()));
        // Equal whatever the activity: insert() alone would keep the old one.
        m_activeFonts.remove(active);
        if (active.activityType != kerval::systemfm::Inactive)
            m_activeFonts.insert(active);
    }
}

void KrvFontRepository::applyUserData(const QList<StaticFontPtr>& fonts) const
{
    m_lock.lockForRead();
    const ActiveFonts activeFonts = m_activeFonts;
    m_lock.unlock();
    merge(activeFonts, fonts);
}

void KrvFontRepository::merge(const ActiveFonts& activeFonts, const QList<StaticFontPtr>& fonts) const
{
    for (const StaticFontPtr& font : fonts) {
        const auto active = activeFonts.constFind(SystemFontDescriptor(font->fileName()));
        if (active == activeFonts.constEnd()) {
            font->setActivityType(kerval::systemfm::Inactive);
        } else {
            font->setActivityType(active->activityType);
            font->setStringField(fms::StaticFont::SpareTextB, active->registryName);
        }
        const KrvUserDatabase::FontData data = m_userDatabase->fontData(font->fontHash());
        font->setIsHidden(data.isHidden);
        font->setUserNote(data.note);
        font->setUserRanking(data.ranking);
        font->setUserDefinedFamilyName(data.familyName);
    }
}

KrvFontRepository::ActiveFonts KrvFontRepository::systemActiveFonts() const
{
    ActiveFonts fonts;
    for (const SystemFontDescriptor& font : m_systemFonts->activeFonts())
        fonts.insert(font);
    return fonts;
}

void KrvFontRepository::updateActiveFontsList()
{
    const ActiveFonts activeFonts = systemActiveFonts();
    {
        QWriteLocker locker(&m_lock);
        m_activeFonts = activeFonts;
    }
    const QList<StaticFontPtr> changed =
        QtConcurrent::blockingFiltered(fonts(), ActivityChangedFilterFunctor(activeFonts));
    announceChanged(idsOf(changed));
}

void KrvFontRepository::onFontsAdded(const QList<StaticFontPtr>& fontList)
{
    announceChanged(countDuplicates(fontList, true));
}

void KrvFontRepository::onFontsRemoved(const QList<StaticFontPtr>& fontList)
{
    announceChanged(countDuplicates(fontList, false));
}

void KrvFontRepository::onFontsChanged(const QList<StaticFontPtr>& fontList)
{
    Q_UNUSED(fontList)
}

// Takes the records into the duplicate table or out of it; the ids whose count changed by that.
QList<int> KrvFontRepository::countDuplicates(const QList<StaticFontPtr>& fonts, bool added)
{
    QMutexLocker duplicates(&m_duplicatesMutex);
    QSet<QString> keys;
    {
        QWriteLocker locker(&m_lock);
        for (const StaticFontPtr& font : fonts) {
            const QString key = duplicateKey(*font);
            if (!added)
                m_duplicateKeys.remove(key, font->id());
            else if (!m_duplicateKeys.contains(key, font->id()))
                m_duplicateKeys.insert(key, font->id());
            keys.insert(key);
        }
    }
    return recountDuplicates(keys);
}

void KrvFontRepository::announceChanged(const QList<int>& fontIds)
{
    if (!fontIds.isEmpty())
        emit fontsChanged(fontIds);
}

QList<int> KrvFontRepository::recountDuplicates(const QSet<QString>& keys)
{
    QList<int> changed;
    for (const QString& key : keys) {
        m_lock.lockForRead();
        const QList<int> ids = m_duplicateKeys.values(key);
        m_lock.unlock();
        const int count = qMax(0, ids.size() - 1);
        for (int id : ids) {
            const StaticFontPtr font = m_strategy->font(id);
            if (!font || font->duplicateCount() == count)
                continue;
            font->setDuplicateCount(count);
            changed.append(id);
        }
    }
    return changed;
}

void KrvFontRepository::refreshFoundries()
{
    const QStringList foundries = m_strategy->foundries();
    {
        QReadLocker locker(&m_lock);
        if (foundries == m_foundries)
            return;
    }
    {
        QWriteLocker locker(&m_lock);
        m_foundries = foundries;
    }
    emit foundriesChanged();
}
