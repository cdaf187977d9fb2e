#pragma once

#include "qtService/database/StaticFontData.h"

#include <QVariant>

#include <optional>

// Operands of conditions as the typed tests need them.
namespace criteria {

// The elements of any list or set value; none for a value that is neither.
QVariantList elements(const QVariant& value);

// The integer that a value stands for when it is compared with an integer property (with a flag, when asFlag): a number
// without a fraction, or a text that reads as one. Nothing for a value no integer equals, in which case QVariant's own
// comparison has the word.
std::optional<qint64> exactNumber(const QVariant& value, bool asFlag);

// As comparisons and bit operations take a value: moments as Unix seconds.
qint64 integer(const QVariant& value);

bool isNumberCollection(const QVariant& value);
// The numbers of a list or set, or the one number of a plain value.
fms::SubsetNumbers subsetNumbers(const QVariant& value);

} // namespace criteria
