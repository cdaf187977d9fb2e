#pragma once

#include <QChar>
#include <QList>
#include <QPoint>
#include <QPolygon>
#include <QString>

#include <optional>

// The values of the protocol's fields. Each reader gives nothing for a text that is not wholly of its form or that asks
// for more than a person at a window can have meant.
namespace kerval::recognizer::values {

struct Letter
{
    QChar character;
    QString pictureId;
};

std::optional<int> number(const QString& text, int minimum, int maximum);
// "x,y;x,y"
std::optional<QList<QPoint>> points(const QString& text);
// Polygons joined by "_", each as points; the empty text is an empty list.
std::optional<QList<QPolygon>> polygons(const QString& text);
// "a,id;b,id". The character stands first and may itself be a comma or a semicolon. A character that no letter shows
// (a space, a control, half of a pair) is reported by its place in `impossible`, counted from 0.
std::optional<QList<Letter>> letters(const QString& text, int* impossible);
// Hexadecimal digits and underscores.
bool isPictureId(const QString& text);

} // namespace kerval::recognizer::values
