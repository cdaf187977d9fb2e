#pragma once

#include "qtService/database/MatchingCriteria.h"
#include "qtService/database/StaticFont.h"

#include <QHash>
#include <QList>
#include <QSharedPointer>
#include <QString>

class FindMathingFontsCommand;
class FontCollectionInterface;
class FontManagementService;
class SimilarFontsGroup;

namespace api::rest {

// The fonts that a query string selects: a collection (the catalogue, a group, the result of a similarity search) and
// criteria put to it. Made on the main thread. A similarity search has to be run first, from that thread, and the
// selection is asked for there; other selections may be asked for on any thread.
class FontSelection
{
public:
    enum class Similarity
    {
        Allowed,
        Ignored
    };

    FontSelection(FontManagementService& service, const QHash<QString, QString>& parameters, Similarity similarity);

    // Null when nothing is to be searched for.
    QSharedPointer<FindMathingFontsCommand> similaritySearch() const { return m_search; }
    // In the order of the collection; of a similarity search, best first.
    QList<StaticFontPtr> fonts() const;
    QList<int> fontIds() const;

    // What stands from `first` to before `last` once the fonts are sorted by the values of a property, equal ones in
    // their former order. Names that are no property of a font sort nothing.
    static QList<StaticFontPtr> sortedSlice(const QList<StaticFontPtr>& fonts, const QString& property, bool descending,
                                            int first, int last);

private:
    QSharedPointer<FontCollectionInterface>
    groupOrCatalogue(FontManagementService& service, const QHash<QString, QString>& parameters, bool* isGroup) const;

    QSharedPointer<FontCollectionInterface> m_collection;
    QSharedPointer<SimilarFontsGroup> m_similar;
    QSharedPointer<FindMathingFontsCommand> m_search;
    MatchingCriteriaPtr m_criteria;
};

} // namespace api::rest
