#pragma once

#include "qtService/database/CriteriaCondition.h"
#include "qtService/database/FontField.h"

namespace criteria {

enum class TextPlace
{
    Anywhere,
    Start,
    End
};

bool isAt(TextPlace place, const QString& text, const QString& word, Qt::CaseSensitivity caseSensitivity);

std::unique_ptr<CriteriaCondition> textEquals(const fms::FontField& field, const QString& text);

// A word in a text field. Shared texts are searched in their folded form, and for the long ones the answer is kept:
// ten thousand records with one licence text cost one search of it.
std::unique_ptr<CriteriaCondition> textSearch(const fms::FontField& field, TextPlace place, const QString& word,
                                              Qt::CaseSensitivity caseSensitivity);

} // namespace criteria
