#pragma once

#include <QCoreApplication>
#include <QImage>
#include <QList>
#include <QPoint>
#include <QPolygon>
#include <QString>

namespace kerval::letters {

// What a click on a picture gives.
struct LetterCut
{
    enum Error
    {
        NoError,
        NoPicture,      // null, or larger than LetterCutter::maxSide on a side
        NoPoints,       // none, or more than LetterCutter::maxPoints
        OutsidePicture, // a point lies outside the picture
        NoInk,          // nothing near a point stands out from its surroundings
        NoLetter        // what was hit reaches too far to be a letter: a border, a photograph
    };

    Error error = NoError;
    QString text; // of the error, for the log
    // Grey, black ink on white, upright, with a margin all around. Null after an error.
    QImage image;
    // Pixels of the image for each pixel of the picture: 1 except for letters so large that they were reduced. Letters
    // of one picture can be compared in size through it.
    double scale = 1;
    // Where the only click lies in the image; null when several made the letter.
    QPointF click;

    bool isValid() const { return error == NoError; }
};

// Cuts the connected letter under clicks out of a picture.
//
// Only the surroundings of the clicks are looked at, as far as the letter needs: a surface through the local background
// is subtracted, the colour difference to it along the ink's own colour becomes coverage, and what is connected to the
// click is the letter. Dark on light, light on dark and differences of hue alone are the same to it. A click that
// misses the ink by little takes the nearest. Stateless, callable from any thread; time and memory are bounded for
// every input.
class LetterCutter
{
    Q_DECLARE_TR_FUNCTIONS(LetterCutter)

public:
    static constexpr int maxSide = 32767;
    static constexpr int maxPoints = 64;
    static constexpr int lowSensitivity = 50;
    static constexpr int normalSensitivity = 30;
    static constexpr int highSensitivity = 4;

    // The parts under all points together are one letter (i, j, umlauts). The angle is that of the view: turning the
    // picture clockwise by it makes the text level. The threshold is the contrast, in grey levels, below which nothing
    // counts as ink; with it the level at which parts still count as connected falls. Ink on either side of a cut line
    // (an open polyline) is not connected.
    static LetterCut cut(const QImage& picture, const QList<QPoint>& points, int angle = 0,
                         int threshold = normalSensitivity, const QList<QPolygon>& cutLines = {});
};

} // namespace kerval::letters
