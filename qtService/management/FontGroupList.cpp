#include "qtService/management/FontGroupList.h"

#include <QCoreApplication>
#include <QThread>

FontGroupList::FontGroupList()
{
    connect(this, &FontGroupList::groupAdded, this, &FontGroupList::groupCountChanged, Qt::DirectConnection);
    connect(this, &FontGroupList::groupRemoved, this, &FontGroupList::groupCountChanged, Qt::DirectConnection);
    if (const QCoreApplication* application = QCoreApplication::instance())
        moveToThread(application->thread());
}

FontGroupList::~FontGroupList() = default;

void FontGroupList::release(FontGroupList* list)
{
    if (list->thread() == QThread::currentThread())
        delete list;
    else
        list->deleteLater();
}

QList<int> FontGroupList::groupIdList() const
{
    QReadLocker locker(&m_lock);
    return m_groupIds;
}

void FontGroupList::addGroup(int groupId, const QSharedPointer<FontGroup>& group)
{
    connect(group.data(), &FontCollectionInterface::fontCountChanged, this,
            [this, groupId] { onFontCountChanged(groupId); });
    connect(group.data(), &FontGroup::nameChanged, this, [this, groupId] { onNameChanged(groupId); });
    QSharedPointer<FontGroup> replaced;
    {
        QWriteLocker locker(&m_lock);
        replaced = m_groups.value(groupId);
        m_groups.insert(groupId, group);
        m_groupIds.append(groupId);
    }
    if (replaced && replaced != group)
        replaced->disconnect(this);
    group->moveToMainThread();
    emit groupAdded(groupId);
}

void FontGroupList::removeGroup(int groupId)
{
    QSharedPointer<FontGroup> removed;
    {
        QWriteLocker locker(&m_lock);
        removed = m_groups.take(groupId);
        m_groupIds.removeAll(groupId);
    }
    if (!removed)
        return;
    removed->disconnect(this);
    emit groupRemoved(groupId);
}

bool FontGroupList::containsGroup(int groupId) const
{
    QReadLocker locker(&m_lock);
    return m_groupIds.contains(groupId);
}

QSharedPointer<FontGroup> FontGroupList::group(int groupId) const
{
    QReadLocker locker(&m_lock);
    return m_groups.value(groupId);
}

int FontGroupList::groupCount() const
{
    QReadLocker locker(&m_lock);
    return m_groups.size();
}

void FontGroupList::onFontCountChanged(int groupId)
{
    emit groupFontCountChanged(groupId);
}

void FontGroupList::onNameChanged(int groupId)
{
    emit groupRenamed(groupId);
}
