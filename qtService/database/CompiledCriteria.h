#pragma once

#include "qtService/database/MatchingCriteria.h"
#include "qtService/database/StaticFont.h"

#include <memory>

// Criteria made ready to be put to many records: property names have become typed accessors, operands have been
// converted, search words folded. Compiling costs a few microseconds; a test of a record then takes one lock of the
// record and no QVariant in the common cases. Results for long texts that records share are remembered, so one object
// serves one thread, and one pass over the records.
//
// A condition on a property that fms::StaticFont does not have compares with an invalid value.
class CompiledCriteria
{
public:
    // Null and empty criteria match every font.
    explicit CompiledCriteria(const MatchingCriteriaPtr& criteria);
    ~CompiledCriteria();
    Q_DISABLE_COPY(CompiledCriteria)

    bool matches(const fms::StaticFont& font) const;
    bool matchesEverything() const;

    struct Node;

private:
    std::unique_ptr<Node> m_root;
    bool m_readsFontHash = false;
};
