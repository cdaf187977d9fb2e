#include "fontlens/letters/AskedLetter.h"

#include "fontlens/letters/TouchingLetters.h"

#include <algorithm>

namespace kerval::letters {

namespace {

constexpr int mostLetters = 16;
constexpr int mostPixels = 1024; // of a letter's side
constexpr double smallestPart = 0.03;
constexpr float surelyWhole = 0.015F; // distance of a face that has the letter as it was cut
constexpr double apartHeight = 160;   // pixels from which on letters that touch are reduced before they are told apart

// The ink is taken over; whatever else depends on it is found.
bool read(const Coverage& ink, AskedLetter& letter)
{
    QPoint corner;
    letter.ink = ink.cropped(0.2F, &corner);
    if (!letter.click.isNull())
        letter.click -= corner;
    letter.single = letter.ink.parts(smallestPart) <= 1;
    return ShapeDescriptor::of(letter.ink, letter.unit, 0, letter.shape);
}

AskedLetter like(const AskedLetter& letter, double factor)
{
    AskedLetter result;
    result.character = letter.character;
    result.unit = letter.unit / factor;
    return result;
}

float closestOf(const LetterTable& table, const ShapeDescriptor& asked)
{
    float closest = mostDistance;
    for (const LetterTable::Row& row : table.rows) {
        if (row.state == LetterTable::Measured)
            closest = std::min(closest, asked.distance(row.shape));
    }
    for (const auto& part : table.mainParts)
        closest = std::min(closest, asked.distance(part.second));
    return closest;
}

} // namespace

std::vector<AskedLetter> readLetters(const QVector<CutLetter>& letters)
{
    std::vector<AskedLetter> result;
    for (const CutLetter& letter : letters) {
        if (letter.character.isNull() || letter.image.isNull() || !(letter.scale > 0) || result.size() >= mostLetters)
            continue;
        QImage image = letter.image;
        AskedLetter asked;
        asked.character = letter.character;
        asked.click = letter.click;
        asked.unit = 1 / letter.scale;
        if (std::max(image.width(), image.height()) > mostPixels) {
            const double factor = double(mostPixels) / std::max(image.width(), image.height());
            image =
                image.scaled(std::max(1, qRound(image.width() * factor)), std::max(1, qRound(image.height() * factor)),
                             Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
            asked.unit /= factor;
            asked.click *= factor;
        }
        if (read(Coverage::fromImage(image), asked))
            result.push_back(std::move(asked));
    }
    return result;
}

double typicalHeight(const std::vector<AskedLetter>& letters)
{
    std::vector<double> heights;
    for (const AskedLetter& letter : letters)
        heights.push_back(letter.ink.height * letter.unit);
    std::sort(heights.begin(), heights.end());
    return qMax(1.0, heights[heights.size() / 2]);
}

std::vector<AskedLetter> turned(const std::vector<AskedLetter>& letters, double degrees)
{
    std::vector<AskedLetter> result;
    for (const AskedLetter& letter : letters) {
        AskedLetter upright = like(letter, 1);
        if (read(letter.ink.turned(degrees), upright))
            result.push_back(std::move(upright));
    }
    return result;
}

std::vector<AskedLetter> reduced(const std::vector<AskedLetter>& letters, double factor)
{
    std::vector<AskedLetter> result;
    for (const AskedLetter& letter : letters) {
        const double each = std::min(1.0, factor * letter.unit);
        AskedLetter small = like(letter, each);
        if (read(letter.ink.reduced(each), small))
            result.push_back(std::move(small));
    }
    return result;
}

bool findParts(const QVector<LetterTablePtr>& tables, std::vector<AskedLetter>& letters)
{
    bool any = false;
    for (std::size_t i = 0; i < letters.size(); ++i) {
        AskedLetter& letter = letters[i];
        if (letter.click.isNull() || closestOf(*tables[int(i)], letter.shape) < surelyWhole)
            continue;
        const double factor = std::min(1.0, apartHeight / letter.ink.height);
        for (const Coverage& ink : lettersAround(letter.ink.reduced(factor), letter.click * factor)) {
            AskedLetter part = like(letter, factor);
            if (read(ink, part))
                letter.parts.push_back(std::move(part));
        }
        any = any || !letter.parts.empty();
    }
    return any;
}

} // namespace kerval::letters
