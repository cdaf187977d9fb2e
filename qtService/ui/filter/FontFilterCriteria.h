#pragma once

#include "qtService/database/MatchingCriteria.h"

class FontFiltersState;

// Translates what the window's filters say into conditions on the catalogue. A cleared state gives an empty group,
// which every font satisfies. The state's groups, projects and tags have no controls and narrow nothing.
MatchingCriteriaPtr criteriaForFilters(const FontFiltersState& state);
