#pragma once

#include "qtService/database/FontCollectionInterface.h"
#include "qtService/management/FontMembers.h"

#include <QReadWriteLock>

// A live subset of another collection. The base class holds the fonts of its source that satisfy its criteria (all of
// them without criteria); subclasses with a rule of their own override the three handlers.
//
// Groups live on the main thread and handle their source's signals there. One made on another thread is moved there by
// the FontGroupList it is added to; whoever makes an unlisted one calls moveToMainThread() before returning to that
// thread's event loop. Changes that arrive between construction and the move wait in the group's queue. The reads may
// be called from any thread. Drop the last pointer to a group made by makeFontGroup() anywhere; it is destroyed on its
// own thread.
class FontGroup : public FontCollectionInterface
{
    Q_OBJECT

public:
    FontGroup(const QSharedPointer<FontCollectionInterface>& source, const QString& name);
    ~FontGroup() override;

    QList<StaticFontPtr> fonts() const override;
    StaticFontPtr font(int fontId) const override;
    QList<StaticFontPtr> findMatchingFonts(const QSharedPointer<MatchingCriteria>& criteria) const override;
    QSharedPointer<FindMathingFontsCommand>
    createFindMathingFontsCommand(const QSharedPointer<MatchingCriteria>& criteria, bool idsOnly) const override;
    QList<int> findMatchingFontIds(const QSharedPointer<MatchingCriteria>& criteria) const override;
    QList<int> fontIdList() const override;
    bool containsFont(const StaticFontPtr& font) const override;
    bool containsFont(int fontId) const override;
    int fontCount() const override;
    bool hasFonts() const override;

    virtual QString name() const;
    void setName(const QString& name);
    // Takes the matching fonts of the source as members without a signal: for use while constructing.
    void setCriteria(const QSharedPointer<MatchingCriteria>& criteria);
    QSharedPointer<MatchingCriteria> criteria() const;
    QSharedPointer<FontCollectionInterface> source() const;

    void moveToMainThread();
    // For shared pointers: deletes the group on its own thread.
    static void release(FontGroup* group);

signals:
    void nameChanged();

protected:
    enum class Start
    {
        WithAllOfSource,
        Empty
    };
    FontGroup(const QSharedPointer<FontCollectionInterface>& source, const QString& name, Start start);

protected slots:
    virtual void onFontsAddedToSource(const QList<int>& fontIdList);
    virtual void onFontsRemovedFromSource(const QList<int>& fontIdList);
    virtual void onSourceFontsChanged(const QList<int>& fontIdList);

protected:
    // A snapshot, cheap to take; it does not follow later changes.
    FontMembers members() const;
    // What really became, or stopped being, a member, in the given order. They emit nothing.
    QList<int> insertMembers(const QList<int>& fontIds);
    QList<int> eraseMembers(const QList<int>& fontIds);
    void setMembers(const QList<int>& fontIds);
    // Follows a new member list and announces the difference: added, then removed.
    void replaceMembers(const QList<int>& fontIds);
    // Takes the changed fonts in or out according to `matching` (those of them that belong here) and announces it.
    void followChange(const QList<int>& fontIds, const QList<int>& matching);
    QList<int> membersAmong(const QList<int>& fontIds) const;
    // The records of those fonts that the source has.
    QList<StaticFontPtr> recordsInSource(const QList<int>& fontIds) const;

private:
    QSharedPointer<MatchingCriteria> criteriaAmong(const QList<int>& fontIds) const;

    mutable QReadWriteLock m_lock; // guards members, name and criteria
    FontMembers m_fontIds;
    QSharedPointer<FontCollectionInterface> m_source;
    QString m_name;
    QSharedPointer<MatchingCriteria> m_criteria;
};

using FontGroupPtr = QSharedPointer<FontGroup>;

// Makes a group of any class that lives on the main thread and is destroyed there.
template <class Group, class... Arguments>
QSharedPointer<Group> makeFontGroup(Arguments&&... arguments)
{
    QSharedPointer<Group> group(new Group(std::forward<Arguments>(arguments)...), &FontGroup::release);
    group->moveToMainThread();
    return group;
}
