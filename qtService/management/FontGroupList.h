#pragma once

#include "qtService/management/FontGroup.h"

#include <QHash>
#include <QReadWriteLock>

// Groups by id, in the order in which they were added. Lives on the main thread, wherever it was made, and takes the
// groups added to it there. The reads may be called from any thread. Drop the last pointer to a list made by
// makeFontGroupList() anywhere; it is destroyed on the main thread.
class FontGroupList : public QObject
{
    Q_OBJECT

public:
    FontGroupList();
    ~FontGroupList() override;

    virtual QList<int> groupIdList() const;

    // Replaces a group of the same id; the id is then listed a second time.
    void addGroup(int groupId, const QSharedPointer<FontGroup>& group);
    void removeGroup(int groupId);
    bool containsGroup(int groupId) const;
    // Null when there is no such group.
    QSharedPointer<FontGroup> group(int groupId) const;
    int groupCount() const;

    // For shared pointers: deletes the list on its own thread.
    static void release(FontGroupList* list);

signals:
    void groupFontCountChanged(int groupId);
    void groupAdded(int groupId);
    void groupRemoved(int groupId);
    void groupCountChanged();
    void groupRenamed(int groupId);

private slots:
    void onFontCountChanged(int groupId);
    void onNameChanged(int groupId);

private:
    mutable QReadWriteLock m_lock;
    QList<int> m_groupIds;
    QHash<int, QSharedPointer<FontGroup>> m_groups;
};

template <class List, class... Arguments>
QSharedPointer<List> makeFontGroupList(Arguments&&... arguments)
{
    return QSharedPointer<List>(new List(std::forward<Arguments>(arguments)...), &FontGroupList::release);
}
