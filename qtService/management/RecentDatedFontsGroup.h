#pragma once

#include "qtService/management/FontGroup.h"

class QDateTime;

// The `maxCount` fonts of the source with the newest date of one kind, newest first, among those that have one. Any
// change of the source makes it look at the dates again.
class RecentDatedFontsGroup : public FontGroup
{
    Q_OBJECT

protected:
    using DateOf = QDateTime (*)(const fms::StaticFont&);

    RecentDatedFontsGroup(const QSharedPointer<FontCollectionInterface>& source, const QString& name, DateOf dateOf,
                          int maxCount);

protected slots:
    void onFontsAddedToSource(const QList<int>& fontIdList) override;
    void onFontsRemovedFromSource(const QList<int>& fontIdList) override;
    void onSourceFontsChanged(const QList<int>& fontIdList) override;

private:
    void update(const QList<int>& touched, bool notify);

    DateOf m_dateOf;
    QList<int> m_sortedIds; // every candidate, newest first
    int m_maxCount;
};
