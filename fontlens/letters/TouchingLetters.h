#pragma once

#include "fontlens/letters/Coverage.h"

#include <QPointF>

#include <vector>

namespace kerval::letters {

// What the letter under a click may be, when the ink connected to it is wider than most single letters: parts between
// two upright or slanting lines to both sides of the click that cross little ink. Which of them is the letter only
// somebody who knows its character can tell. Upright ink, the click in its pixels.
std::vector<Coverage> lettersAround(const Coverage& ink, const QPointF& click);

} // namespace kerval::letters
