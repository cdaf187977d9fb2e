#pragma once

#include "qtService/database/FontDatabase.h"
#include "qtService/database/MatchingCriteria.h"

// Criteria as a condition of SQL over table "font".
struct SqlCriteria
{
    QString condition; // empty when nothing is asked
    // For the placeholders, in their order; patterns have their "%".
    QList<QPair<FontDatabase::FontTableColumn, QVariant>> values;

    // Groups become parentheses. A property without a column is put to the id.
    static SqlCriteria build(const MatchingCriteriaPtr& criteria, const FontDatabase& database);
};
