#pragma once

#include "qtService/database/MatchingCriteria.h"

#include <QHash>
#include <QString>

namespace api::rest {

// The selecting part of a query string as matching criteria: ids, subsets, foundry, formats, search words, classes and
// the bands of weight, width, size and slant. Parameters that say nothing add no condition.
MatchingCriteriaPtr criteriaFromQuery(const QHash<QString, QString>& parameters);

// "page" and "per_page": paging is on with a page from 0 and a page size from 1.
struct Paging
{
    qint64 page = -1;
    qint64 perPage = -1;

    static Paging fromQuery(const QHash<QString, QString>& parameters);
    bool isOn() const { return page >= 0 && perPage >= 1; }
    // The slice [first, last) of so many items; empty behind the end.
    int first(int count) const;
    int last(int count) const;
    bool isPastEnd(int count) const;
};

} // namespace api::rest
