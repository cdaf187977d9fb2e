#pragma once

#include "qtService/database/MatchingCriteria.h"
#include "qtService/database/StaticFontData.h"

#include <memory>

// A condition of compiled criteria: a leaf ready to be put to the data of a record, whose lock the caller holds.
class CriteriaCondition
{
public:
    virtual ~CriteriaCondition() = default;
    virtual bool holds(const fms::StaticFontData& data) const = 0;

    // The condition of a leaf, negation included. Null when its flags ask for nothing.
    static std::unique_ptr<CriteriaCondition> compile(const MatchingCriteria& leaf);
};
