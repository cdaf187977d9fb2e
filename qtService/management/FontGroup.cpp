#include "qtService/management/FontGroup.h"

#include "qtService/database/FindMathingFontsCommand.h"
#include "qtService/database/MatchingCriteria.h"
#include "qtService/management/FontGroupFindMathingFontsCommand.h"

#include <QCoreApplication>
#include <QSet>
#include <QThread>

namespace {

// Up to here asking the source for one record after the other is cheaper than a query.
const int fewRecords = 16;

} // namespace

FontGroup::FontGroup(const QSharedPointer<FontCollectionInterface>& source, const QString& name)
    : FontGroup(source, name, Start::WithAllOfSource)
{
}

FontGroup::FontGroup(const QSharedPointer<FontCollectionInterface>& source, const QString& name, Start start)
    : m_source(source)
    , m_name(name)
{
    connect(this, &FontCollectionInterface::fontsAdded, this, &FontCollectionInterface::fontCountChanged,
            Qt::DirectConnection);
    connect(this, &FontCollectionInterface::fontsRemoved, this, &FontCollectionInterface::fontCountChanged,
            Qt::DirectConnection);
    // Connected before the members are read: a change in between is then heard of twice, never not at all.
    connect(source.data(), &FontCollectionInterface::fontsAdded, this, &FontGroup::onFontsAddedToSource);
    connect(source.data(), &FontCollectionInterface::fontsRemoved, this, &FontGroup::onFontsRemovedFromSource);
    connect(source.data(), &FontCollectionInterface::fontsChanged, this, &FontGroup::onSourceFontsChanged);
    if (start == Start::WithAllOfSource)
        m_fontIds.assign(source->fontIdList());
}

FontGroup::~FontGroup() = default;

void FontGroup::moveToMainThread()
{
    const QCoreApplication* application = QCoreApplication::instance();
    if (application && thread() == QThread::currentThread())
        moveToThread(application->thread());
}

void FontGroup::release(FontGroup* group)
{
    if (group->thread() == QThread::currentThread())
        delete group;
    else
        group->deleteLater();
}

QList<StaticFontPtr> FontGroup::fonts() const
{
    return findMatchingFonts(MatchingCriteria::allOf());
}

StaticFontPtr FontGroup::font(int fontId) const
{
    return containsFont(fontId) ? m_source->font(fontId) : StaticFontPtr();
}

QList<StaticFontPtr> FontGroup::findMatchingFonts(const MatchingCriteriaPtr& criteria) const
{
    const auto command = createFindMathingFontsCommand(criteria, false);
    command->start();
    command->waitForFinished();
    return command->fonts();
}

QSharedPointer<FindMathingFontsCommand> FontGroup::createFindMathingFontsCommand(const MatchingCriteriaPtr& criteria,
                                                                                 bool idsOnly) const
{
    return QSharedPointer<FontGroupFindMathingFontsCommand>::create(m_source, members(), criteria, idsOnly);
}

QList<int> FontGroup::findMatchingFontIds(const MatchingCriteriaPtr& criteria) const
{
    const auto command = createFindMathingFontsCommand(criteria, true);
    command->start();
    command->waitForFinished();
    return command->fontIds();
}

QList<int> FontGroup::fontIdList() const
{
    QReadLocker locker(&m_lock);
    return m_fontIds.ids();
}

bool FontGroup::containsFont(const StaticFontPtr& font) const
{
    return font && containsFont(font->id());
}

bool FontGroup::containsFont(int fontId) const
{
    QReadLocker locker(&m_lock);
    return m_fontIds.contains(fontId);
}

int FontGroup::fontCount() const
{
    QReadLocker locker(&m_lock);
    return m_fontIds.count();
}

bool FontGroup::hasFonts() const
{
    return fontCount() > 0;
}

QString FontGroup::name() const
{
    QReadLocker locker(&m_lock);
    return m_name;
}

void FontGroup::setName(const QString& name)
{
    {
        QWriteLocker locker(&m_lock);
        m_name = name;
    }
    emit nameChanged();
}

void FontGroup::setCriteria(const MatchingCriteriaPtr& criteria)
{
    const QList<int> matching = m_source->findMatchingFontIds(criteria);
    QWriteLocker locker(&m_lock);
    m_criteria = criteria;
    m_fontIds.assign(matching);
}

MatchingCriteriaPtr FontGroup::criteria() const
{
    QReadLocker locker(&m_lock);
    return m_criteria;
}

QSharedPointer<FontCollectionInterface> FontGroup::source() const
{
    return m_source;
}

MatchingCriteriaPtr FontGroup::criteriaAmong(const QList<int>& fontIds) const
{
    const auto criteria = MatchingCriteria::allOf({MatchingCriteria::idIn(fontIds)});
    if (const MatchingCriteriaPtr own = this->criteria())
        criteria->append(own);
    return criteria;
}

void FontGroup::onFontsAddedToSource(const QList<int>& fontIdList)
{
    const QList<int> added = insertMembers(m_source->findMatchingFontIds(criteriaAmong(fontIdList)));
    if (!added.isEmpty())
        emit fontsAdded(added);
}

void FontGroup::onFontsRemovedFromSource(const QList<int>& fontIdList)
{
    const QList<int> removed = eraseMembers(fontIdList);
    if (!removed.isEmpty())
        emit fontsRemoved(removed);
}

void FontGroup::onSourceFontsChanged(const QList<int>& fontIdList)
{
    followChange(fontIdList, m_source->findMatchingFontIds(criteriaAmong(fontIdList)));
}

void FontGroup::followChange(const QList<int>& fontIds, const QList<int>& matching)
{
    const QSet<int> belonging(matching.cbegin(), matching.cend());
    QList<int> pending;
    QSet<int> seen;
    for (int id : fontIds) {
        if (!belonging.contains(id) && !seen.contains(id))
            pending.append(id);
        seen.insert(id);
    }
    QList<int> changed;
    QList<int> added;
    {
        QWriteLocker locker(&m_lock);
        for (int id : matching) {
            if (m_fontIds.contains(id))
                changed.append(id);
        }
        added = m_fontIds.insert(matching);
        m_fontIds.erase(pending);
    }
    if (!added.isEmpty())
        emit fontsAdded(added);
    // Every font that does not belong here, whether it was a member or not.
    if (!pending.isEmpty())
        emit fontsRemoved(pending);
    if (!changed.isEmpty())
        emit fontsChanged(changed);
}

FontMembers FontGroup::members() const
{
    QReadLocker locker(&m_lock);
    return m_fontIds;
}

QList<int> FontGroup::insertMembers(const QList<int>& fontIds)
{
    QWriteLocker locker(&m_lock);
    return m_fontIds.insert(fontIds);
}

QList<int> FontGroup::eraseMembers(const QList<int>& fontIds)
{
    QWriteLocker locker(&m_lock);
    return m_fontIds.erase(fontIds);
}

void FontGroup::setMembers(const QList<int>& fontIds)
{
    QWriteLocker locker(&m_lock);
    m_fontIds.assign(fontIds);
}

void FontGroup::replaceMembers(const QList<int>& fontIds)
{
    QList<int> added;
    QList<int> removed;
    {
        QWriteLocker locker(&m_lock);
        const FontMembers previous = m_fontIds;
        m_fontIds.assign(fontIds);
        for (int id : m_fontIds.ids()) {
            if (!previous.contains(id))
                added.append(id);
        }
        for (int id : previous.ids()) {
            if (!m_fontIds.contains(id))
                removed.append(id);
        }
    }
    if (!added.isEmpty())
        emit fontsAdded(added);
    if (!removed.isEmpty())
        emit fontsRemoved(removed);
}

QList<int> FontGroup::membersAmong(const QList<int>& fontIds) const
{
    QReadLocker locker(&m_lock);
    QList<int> found;
    for (int id : fontIds) {
        if (m_fontIds.contains(id))
            found.append(id);
    }
    return found;
}

QList<StaticFontPtr> FontGroup::recordsInSource(const QList<int>& fontIds) const
{
    if (fontIds.size() > fewRecords)
        return m_source->findMatchingFonts(MatchingCriteria::allOf({MatchingCriteria::idIn(fontIds)}));
    QList<StaticFontPtr> records;
    for (int id : fontIds) {
        const StaticFontPtr record = m_source->font(id);
        if (record)
            records.append(record);
    }
    return records;
}
