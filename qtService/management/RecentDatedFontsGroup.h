#pragma once

#include "qtService/management/FontGroup.h"

#include <QHash>

class QDateTime;

// The `maxCount` fonts of the source with the newest date of one kind, newest first, among those that have one. It
// remembers the dates of its candidates, so that a change of the source costs a look at the fonts that changed.
class RecentDatedFontsGroup : public FontGroup
{
    Q_OBJECT

protected:
    using DateOf = QDateTime (fms::StaticFont::*)() const;

    RecentDatedFontsGroup(const QSharedPointer<FontCollectionInterface>& source, const QString& name, DateOf dateOf,
                          int maxCount);

protected slots:
    void onFontsAddedToSource(const QList<int>& fontIdList) override;
    void onFontsRemovedFromSource(const QList<int>& fontIdList) override;
    void onSourceFontsChanged(const QList<int>& fontIdList) override;

private:
    // True when the candidates are others than before, or others come first.
    bool readDates(const QList<int>& fontIds, const QList<StaticFontPtr>& fonts);
    QList<int> newest() const;
    void update(const QList<int>& fontIds, const QList<StaticFontPtr>& fonts);

    DateOf m_dateOf;
    int m_maxCount;
    QHash<int, qint64> m_dates; // every candidate; used on the group's thread only
};
