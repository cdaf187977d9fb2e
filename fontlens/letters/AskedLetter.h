#pragma once

#include "fontlens/letters/Coverage.h"
#include "fontlens/letters/LetterIndex.h"
#include "fontlens/letters/LetterMatcher.h"
#include "fontlens/letters/ShapeDescriptor.h"

#include <QPointF>

#include <vector>

namespace kerval::letters {

constexpr float mostDistance = 0.12F; // of a descriptor; a letter of another construction is no worse than that

// A letter of the query, in pixels of the picture or larger ones.
struct AskedLetter
{
    QChar character;
    Coverage ink;
    QPointF click;   // in the ink; null when not known
    double unit = 1; // picture's pixels for each of the ink's
    bool single = false;
    ShapeDescriptor shape;
    std::vector<AskedLetter> parts; // that may be the letter, when others touch it
};

// Letters without character or ink are left out.
std::vector<AskedLetter> readLetters(const QVector<CutLetter>& letters);
// In pixels of the picture.
double typicalHeight(const std::vector<AskedLetter>& letters);
// These have no parts and no clicks.
std::vector<AskedLetter> turned(const std::vector<AskedLetter>& letters, double degrees);
std::vector<AskedLetter> reduced(const std::vector<AskedLetter>& letters, double factor);

// Finds parts of those letters that no face has as they were cut; one table for each letter. False when there are none.
bool findParts(const QVector<LetterTablePtr>& tables, std::vector<AskedLetter>& letters);

} // namespace kerval::letters
