#pragma once

#include "qtService/app/core/AbstractAsynchronousCommand.h"
#include "qtService/database/MatchingCriteria.h"
#include "qtService/database/StaticFont.h"

// A matching query over a collection of fonts. Subclasses implement operator(). Results are complete once the state is
// Finished; after a cancellation they hold what had been found by then.
class FindMathingFontsCommand : public AbstractAsynchronousCommand
{
    Q_OBJECT

public:
    // With idsOnly the results are ids, otherwise records; the other list stays empty.
    FindMathingFontsCommand(const MatchingCriteriaPtr& criteria, bool idsOnly);

    MatchingCriteriaPtr criteria() const;
    bool idsOnly() const;

    // An order for the results, by the values of a property; an empty name asks for the collection's own order. Set
    // before start().
    void setOrdering(const QString& propertyName, Qt::SortOrder order = Qt::AscendingOrder);
    QString orderProperty() const;
    Qt::SortOrder sortOrder() const;

    QList<StaticFontPtr> fonts() const;
    QList<int> fontIds() const;

protected:
    // Runs another search as a part of this one and waits for it; a cancel() of this one reaches it at once, so that
    // whoever drops a cancelled search does not wait for the catalogue to be read to its end.
    void runPart(const QSharedPointer<FindMathingFontsCommand>& part);
    void setFonts(const QList<StaticFontPtr>& fonts);
    void setFontIds(const QList<int>& ids);
    // Stores records as the kind of result that was asked for.
    void setResult(const QList<StaticFontPtr>& fonts);

private:
    const MatchingCriteriaPtr m_criteria;
    const bool m_idsOnly;
    QString m_orderProperty;
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
    QList<StaticFontPtr> m_fonts;
    QList<int> m_fontIds;
};

using FindMathingFontsCommandPtr = QSharedPointer<FindMathingFontsCommand>;
