#include "qtService/database/CachedFontRepositoryStrategy.h"

#include "qtService/database/CachedFindMathingFontsCommand.h"
#include "qtService/database/CriteriaValues.h"
#include "qtService/database/StaticFontData.h"
#include "qtService/database/platform_paths.h"

CachedFontRepositoryStrategy::CachedFontRepositoryStrategy(const QSharedPointer<FontRepositoryStrategy>& storage)
    : m_storage(storage)
{
    insertRecords(m_storage->fonts());
    refreshFoundries();
}

// Called under the write lock, or before any other thread knows the strategy.
void CachedFontRepositoryStrategy::insertRecords(const QList<StaticFontPtr>& fonts)
{
    m_byId.reserve(m_byId.size() + fonts.size());
    for (const StaticFontPtr& font : fonts) {
        const int id = font->id();
        if (id == fms::StaticFont::NewId || m_byId.contains(id))
            continue; // storage refused it, or it came twice
        m_byId.insert(id, font);
        m_list.append(font);
        if (m_hashesKnown)
            m_byHash.insert(font->fontHash(), font);
    }
}

void CachedFontRepositoryStrategy::addFaces(const QList<StaticFontPtr>& fonts)
{
    for (const StaticFontPtr& font : fonts) {
        if (font->id() != fms::StaticFont::NewId)
            m_fileFaces[fms::platform::pathKey(font->fileName())].append(font->faceIndex());
    }
}

QList<StaticFontPtr> CachedFontRepositoryStrategy::fonts()
{
    QReadLocker locker(&m_lock);
    return m_list;
}

StaticFontPtr CachedFontRepositoryStrategy::font(int id)
{
    QReadLocker locker(&m_lock);
    return m_byId.value(id);
}

QList<StaticFontPtr> CachedFontRepositoryStrategy::fontsForHash(const QString& fontHash)
{
    {
        QReadLocker locker(&m_lock);
        if (m_hashesKnown)
            return m_byHash.values(fontHash);
    }
    // Hashes cost a digest each, so the table waits until someone asks.
    QWriteLocker locker(&m_lock);
    if (!m_hashesKnown) {
        for (const StaticFontPtr& font : qAsConst(m_list))
            m_byHash.insert(font->fontHash(), font);
        m_hashesKnown = true;
    }
    return m_byHash.values(fontHash);
}

QList<StaticFontPtr> CachedFontRepositoryStrategy::findMatchingFonts(const MatchingCriteriaPtr& criteria)
{
    const auto command = createFindMathingFontsCommand(criteria, false);
    command->start();
    command->waitForFinished();
    return command->fonts();
}

FindMathingFontsCommandPtr
CachedFontRepositoryStrategy::createFindMathingFontsCommand(const MatchingCriteriaPtr& criteria, bool idsOnly)
{
    return QSharedPointer<CachedFindMathingFontsCommand>::create(candidates(criteria), criteria, idsOnly);
}

QList<int> CachedFontRepositoryStrategy::findMatchingFontIds(const MatchingCriteriaPtr& criteria)
{
    const auto command = createFindMathingFontsCommand(criteria, true);
    command->start();
    command->waitForFinished();
    return command->fontIds();
}

// The records that can match: all of them, or those named by a condition on id or hash in a list, which groups put into
// their queries. Ids ascend in the list of records, so records sorted by id keep its order.
QList<StaticFontPtr> CachedFontRepositoryStrategy::candidates(const MatchingCriteriaPtr& criteria)
{
    if (!criteria || criteria->groupKind() != MatchingCriteria::AllOf)
        return fonts();
    const QList<MatchingCriteriaPtr> conditions = criteria->children();
    for (const MatchingCriteriaPtr& condition : conditions) {
        if (!condition || condition->operatorFlags() != MatchingCriteria::InList)
            continue;
        if (condition->propertyName() == QLatin1String("id"))
            return fontsNamed(criteria::elements(condition->value()));
        if (condition->propertyName() == QLatin1String("fontHash"))
            return fontsHashed(criteria::elements(condition->value()));
    }
    return fonts();
}

QList<StaticFontPtr> CachedFontRepositoryStrategy::fontsNamed(const QVariantList& elements)
{
    QVector<int> ids;
    ids.reserve(elements.size());
    for (const QVariant& element : elements)
        ids.append(element.toInt());
    std::sort(ids.begin(), ids.end());
    ids.erase(std::unique(ids.begin(), ids.end()), ids.end());

    QReadLocker locker(&m_lock);
    QList<StaticFontPtr> named;
    for (int id : qAsConst(ids)) {
        if (const StaticFontPtr font = m_byId.value(id))
            named.append(font);
    }
    return named;
}

QList<StaticFontPtr> CachedFontRepositoryStrategy::fontsHashed(const QVariantList& elements)
{
    QMap<int, StaticFontPtr> found;
    for (const QVariant& element : elements) {
        const QList<StaticFontPtr> fonts = fontsForHash(element.toString());
        for (const StaticFontPtr& font : fonts)
            found.insert(font->id(), font);
    }
    return found.values();
}

bool CachedFontRepositoryStrategy::addFonts(const QList<StaticFontPtr>& fonts)
{
    return addFonts(fonts, {});
}

bool CachedFontRepositoryStrategy::addFonts(const QList<StaticFontPtr>& fonts, const Alongside& alongside)
{
    QMutexLocker turn(&m_writers);
    const bool complete = m_storage->addFonts(fonts, alongside);
    QWriteLocker locker(&m_lock);
    insertRecords(fonts);
    if (m_facesKnown)
        addFaces(fonts);
    refreshFoundries();
    return complete;
}

bool CachedFontRepositoryStrategy::addFont(const StaticFontPtr& font)
{
    return addFonts({font});
}

bool CachedFontRepositoryStrategy::updateFonts(const QList<StaticFontPtr>& fonts)
{
    QMutexLocker turn(&m_writers);
    if (!m_storage->updateFonts(fonts))
        return false;
    QWriteLocker locker(&m_lock);
    bool replaces = false;
    for (const StaticFontPtr& font : fonts) {
        const auto known = m_byId.find(font->id());
        if (known == m_byId.end())
            continue; // removed meanwhile; an update brings no font back
        if (known.value() == font)
            continue;
        replaces = true;
        if (m_hashesKnown) {
            m_byHash.remove(known.value()->fontHash(), known.value());
            m_byHash.insert(font->fontHash(), font);
        }
        known.value() = font;
    }
    if (replaces) {
        for (StaticFontPtr& font : m_list)
            font = m_byId.value(font->id());
    }
    m_fileFaces.clear();
    m_facesKnown = false;
    return true;
}

bool CachedFontRepositoryStrategy::updateFont(const StaticFontPtr& font)
{
    return updateFonts({font});
}

bool CachedFontRepositoryStrategy::removeFonts(const QList<StaticFontPtr>& fonts)
{
    QMutexLocker turn(&m_writers);
    if (!m_storage->removeFonts(fonts))
        return false;
    QWriteLocker locker(&m_lock);
    for (const StaticFontPtr& font : fonts) {
        const StaticFontPtr kept = m_byId.take(font->id());
        if (kept && m_hashesKnown)
            m_byHash.remove(kept->fontHash(), kept);
    }
    const auto isGone = [this](const StaticFontPtr& font) { return !m_byId.contains(font->id()); };
    m_list.erase(std::remove_if(m_list.begin(), m_list.end(), isGone), m_list.end());
    m_fileFaces.clear();
    m_facesKnown = false;
    refreshFoundries();
    return true;
}

bool CachedFontRepositoryStrategy::removeFont(const StaticFontPtr& font)
{
    return removeFonts({font});
}

bool CachedFontRepositoryStrategy::removeAll()
{
    QMutexLocker turn(&m_writers);
    if (!m_storage->removeAll())
        return false;
    QWriteLocker locker(&m_lock);
    m_byId.clear();
    m_byHash.clear();
    m_list.clear();
    m_fileFaces.clear();
    refreshFoundries();
    return true;
}

int CachedFontRepositoryStrategy::fontCount()
{
    QReadLocker locker(&m_lock);
    return m_list.size();
}

bool CachedFontRepositoryStrategy::containsFont(int id)
{
    QReadLocker locker(&m_lock);
    return m_byId.contains(id);
}

// From memory, as are the foundries below: what storage would tell is the same, after reading the whole table.
QHash<QString, QList<int>> CachedFontRepositoryStrategy::fileFaces()
{
    {
        QReadLocker locker(&m_lock);
        if (m_facesKnown)
            return m_fileFaces;
    }
    QWriteLocker locker(&m_lock);
    if (!m_facesKnown) {
        addFaces(m_list);
        m_facesKnown = true;
    }
    return m_fileFaces;
}

QList<int> CachedFontRepositoryStrategy::fontIdList()
{
    QReadLocker locker(&m_lock);
    QList<int> ids;
    ids.reserve(m_list.size());
    for (const StaticFontPtr& font : qAsConst(m_list))
        ids.append(font->id());
    return ids;
}

QList<int> CachedFontRepositoryStrategy::fontIdsForFile(const QString& fileName)
{
    return findMatchingFontIds(MatchingCriteria::leaf(MatchingCriteria::Equal, QStringLiteral("fileName"), fileName));
}

QStringList CachedFontRepositoryStrategy::foundries()
{
    QReadLocker locker(&m_lock);
    return m_foundries;
}

// Called under the write lock. An update of records does not come here.
void CachedFontRepositoryStrategy::refreshFoundries()
{
    QHash<const void*, QString> names;
    for (const StaticFontPtr& font : qAsConst(m_list)) {
        fms::StaticFontAccess::read(*font, [&names](const fms::StaticFontData& data) {
            const fms::SharedText& foundry = data.foundry;
            if (!names.contains(foundry.identity()))
                names.insert(foundry.identity(), foundry.text());
        });
    }
    m_foundries = names.values();
    m_foundries.sort();
}
