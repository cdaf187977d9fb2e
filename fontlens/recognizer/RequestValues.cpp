#include "fontlens/recognizer/RequestValues.h"

#include <QVector>

#include <algorithm>

namespace kerval::recognizer::values {

namespace {

constexpr int maximumPoints = 64;
constexpr int maximumPolygons = 128;
constexpr int maximumPolygonPoints = 4096; // of all polygons together
constexpr int maximumLetters = 128;
constexpr int maximumIdLength = 64;
constexpr int farAway = 100000; // pixels; a cut line may begin outside the picture

std::optional<QPoint> point(const QStringRef& text)
{
    const auto parts = text.split(QLatin1Char(','));
    if (parts.size() != 2)
        return std::nullopt;
    const auto x = number(parts.at(0).toString(), -farAway, farAway);
    const auto y = number(parts.at(1).toString(), -farAway, farAway);
    return x && y ? std::optional<QPoint>(QPoint(*x, *y)) : std::nullopt;
}

std::optional<QVector<QPoint>> pointVector(const QStringRef& text, int maximum)
{
    if (text.count(QLatin1Char(';')) >= maximum)
        return std::nullopt;
    QVector<QPoint> found;
    const auto items = text.split(QLatin1Char(';'));
    for (const QStringRef& item : items) {
        const auto next = point(item);
        if (!next)
            return std::nullopt;
        found.append(*next);
    }
    return found;
}

bool canBeLetter(QChar c)
{
    return c.isPrint() && !c.isSpace() && !c.isSurrogate() && c.unicode() != QChar::ReplacementCharacter;
}

} // namespace

std::optional<int> number(const QString& text, int minimum, int maximum)
{
    bool isNumber = false;
    const int value = text.toInt(&isNumber);
    if (!isNumber || value < minimum || value > maximum)
        return std::nullopt;
    return value;
}

std::optional<QList<QPoint>> points(const QString& text)
{
    const auto found = pointVector(QStringRef(&text), maximumPoints);
    return found ? std::optional<QList<QPoint>>(found->toList()) : std::nullopt;
}

std::optional<QList<QPolygon>> polygons(const QString& text)
{
    QList<QPolygon> found;
    if (text.isEmpty())
        return found;
    if (text.count(QLatin1Char('_')) >= maximumPolygons)
        return std::nullopt;
    int budget = maximumPolygonPoints;
    const auto items = text.splitRef(QLatin1Char('_'));
    for (const QStringRef& item : items) {
        const auto corners = pointVector(item, budget);
        if (!corners)
            return std::nullopt;
        budget -= corners->size();
        found.append(QPolygon(*corners));
    }
    return found;
}

std::optional<QList<Letter>> letters(const QString& text, int* impossible)
{
    *impossible = -1;
    QList<Letter> found;
    for (int position = 0; position < text.size();) {
        if (found.size() == maximumLetters || position + 1 >= text.size() || text.at(position + 1) != QLatin1Char(','))
            return std::nullopt;
        const int end = text.indexOf(QLatin1Char(';'), position + 2);
        const Letter letter{text.at(position), text.mid(position + 2, end < 0 ? -1 : end - position - 2)};
        if (!isPictureId(letter.pictureId))
            return std::nullopt;
        if (!canBeLetter(letter.character) && *impossible < 0)
            *impossible = found.size();
        found.append(letter);
        if (end == text.size() - 1)
            return std::nullopt; // a semicolon with nothing behind it
        position = end < 0 ? text.size() : end + 1;
    }
    return found.isEmpty() ? std::nullopt : std::optional<QList<Letter>>(found);
}

bool isPictureId(const QString& text)
{
    const auto isIdCharacter = [](QChar c) {
        return (c >= QLatin1Char('0') && c <= QLatin1Char('9')) || (c >= QLatin1Char('a') && c <= QLatin1Char('f')) ||
               (c >= QLatin1Char('A') && c <= QLatin1Char('F')) || c == QLatin1Char('_');
    };
    return !text.isEmpty() && text.size() <= maximumIdLength && std::all_of(text.cbegin(), text.cend(), isIdCharacter);
}

} // namespace kerval::recognizer::values
