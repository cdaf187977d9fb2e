#include "fontlens/letters/LetterCutter.h"

#include "fontlens/letters/LetterRegion.h"

#include <QTransform>

#include <algorithm>
#include <cmath>
#include <memory>

namespace kerval::letters {

namespace {

constexpr int firstReach = 40; // pixels around the points that are looked at first; doubled until it is enough
constexpr int lastReach = 4096;
constexpr int mostCutLinePoints = 10000;
constexpr double sameArea = 0.12; // two views of a letter agree when their areas differ by less
constexpr double margin = 0.08;   // of the cut letter's larger side
constexpr double onePixel = 1;

LetterCut failure(LetterCut::Error error, const QString& text)
{
    LetterCut result;
    result.error = error;
    result.text = text;
    return result;
}

float cubic(float before, float at, float after, float beyond, float t)
{
    return at + 0.5F * t *
                    (after - before +
                     t * (2 * before - 5 * at + 4 * after - beyond + t * (3 * (at - after) + beyond - before)));
}

// Turned clockwise about the middle, on a canvas that holds all of it.
Coverage turned(const Coverage& ink, int degrees)
{
    const double radians = degrees * std::acos(-1.0) / 180;
    const double c = std::cos(radians);
    const double s = std::sin(radians);
    Coverage result(int(std::ceil(std::abs(c) * ink.width + std::abs(s) * ink.height)) + 2,
                    int(std::ceil(std::abs(s) * ink.width + std::abs(c) * ink.height)) + 2);
    const auto valueAt = [&ink](int x, int y) {
        return x >= 0 && y >= 0 && x < ink.width && y < ink.height ? ink.row(y)[x] : 0.0F;
    };
    for (int y = 0; y < result.height; ++y) {
        for (int x = 0; x < result.width; ++x) {
            const double offX = x + 0.5 - 0.5 * result.width;
            const double offY = y + 0.5 - 0.5 * result.height;
            const double fromX = c * offX + s * offY + 0.5 * ink.width - 0.5;
            const double fromY = -s * offX + c * offY + 0.5 * ink.height - 0.5;
            const int cellX = int(std::floor(fromX));
            const int cellY = int(std::floor(fromY));
            if (cellX < -2 || cellY < -2 || cellX > ink.width || cellY > ink.height)
                continue;
            float lines[4];
            for (int i = 0; i < 4; ++i) {
                const int line = cellY - 1 + i;
                lines[i] = cubic(valueAt(cellX - 1, line), valueAt(cellX, line), valueAt(cellX + 1, line),
                                 valueAt(cellX + 2, line), float(fromX - cellX));
            }
            result.row(y)[x] =
                std::clamp(cubic(lines[0], lines[1], lines[2], lines[3], float(fromY - cellY)), 0.0F, 1.0F);
        }
    }
    return result;
}

struct View
{
    std::unique_ptr<ColourPatch> patch;
    std::unique_ptr<LetterRegion> region;
    bool whole = false;

    bool isClosed() const { return region && region->verdict() == LetterRegion::Closed; }
    double area() const { return region->area() * patch->reduction() * patch->reduction(); }
    bool isRoomy() const
    {
        return region->box().width() * 5 < patch->width() * 3 && region->box().height() * 5 < patch->height() * 3;
    }
};

View look(const QImage& picture, const QList<QPoint>& points, int reach, int threshold, const QList<QPolygon>& cutLines)
{
    QRect part;
    for (const QPoint& point : points)
        part |= QRect(point, QSize(1, 1));
    const QRect all = picture.rect();
    part = part.adjusted(-reach, -reach, reach, reach) & all;
    View view;
    view.whole = part == all;
    view.patch = std::make_unique<ColourPatch>(picture, part);
    view.patch->subtractBackground();
    const double side = std::max(all.width(), all.height());
    const double miss = std::clamp(3 + side / 500, 4.0, 12.0) / view.patch->reduction();
    Qt::Edges edges;
    edges.setFlag(Qt::LeftEdge, part.left() == all.left());
    edges.setFlag(Qt::TopEdge, part.top() == all.top());
    edges.setFlag(Qt::RightEdge, part.right() == all.right());
    edges.setFlag(Qt::BottomEdge, part.bottom() == all.bottom());
    QList<QPointF> inPatch;
    for (const QPoint& point : points)
        inPatch.append(view.patch->fromPicture(QPointF(point) + QPointF(0.5, 0.5)));
    QList<QPolygonF> lines;
    for (const QPolygon& cutLine : cutLines) {
        QPolygonF line;
        for (const QPoint& point : cutLine)
            line.append(view.patch->fromPicture(point));
        lines.append(line);
    }
    view.region =
        std::make_unique<LetterRegion>(*view.patch, inPatch, threshold, std::max(onePixel, miss), lines, edges);
    return view;
}

LetterCut finished(const View& view, int angle)
{
    Coverage ink = view.region->ink();
    if (angle % 360 != 0)
        ink = turned(ink, angle % 360);
    ink = ink.cropped(0.1F);
    if (ink.isEmpty())
        return failure(LetterCut::NoInk, LetterCutter::tr("There is no ink here."));
    ink = ink.withMargin(2 + int(margin * std::max(ink.width, ink.height)));
    LetterCut result;
    result.image = ink.toImage();
    result.scale = 1 / view.patch->reduction();
    return result;
}

} // namespace

LetterCut LetterCutter::cut(const QImage& picture, const QList<QPoint>& points, int angle, int threshold,
                            const QList<QPolygon>& cutLines)
{
    if (picture.isNull() || picture.width() > maxSide || picture.height() > maxSide)
        return failure(LetterCut::NoPicture, tr("There is no picture, or it is too large."));
    if (points.isEmpty() || points.size() > maxPoints)
        return failure(LetterCut::NoPoints, tr("There are no points, or too many."));
    // A position on the far edge, rounded, lies one pixel outside.
    const QRect rect = picture.rect();
    QList<QPoint> inside;
    for (const QPoint& point : points) {
        if (!rect.adjusted(0, 0, 1, 1).contains(point))
            return failure(LetterCut::OutsidePicture, tr("A point lies outside of the picture."));
        const QPoint clamped(std::min(point.x(), rect.right()), std::min(point.y(), rect.bottom()));
        if (std::abs(clamped.x() - points.first().x()) > lastReach ||
            std::abs(clamped.y() - points.first().y()) > lastReach)
            return failure(LetterCut::NoLetter, tr("The points lie too far from each other."));
        inside.append(clamped);
    }
    int corners = 0;
    for (const QPolygon& line : cutLines)
        corners += line.size();
    if (corners > mostCutLinePoints)
        return failure(LetterCut::NoPoints, tr("There are too many cut lines."));
    threshold = std::clamp(threshold, 0, 100);

    // What looks like a letter from near may be the white inside of one: two views must agree.
    View before;
    bool anyInk = false;
    for (int reach = firstReach; reach <= lastReach; reach *= 2) {
        View view = look(picture, inside, reach, threshold, cutLines);
        anyInk = view.region->verdict() != LetterRegion::Background;
        if (before.isClosed() && view.isClosed() &&
            std::abs(view.area() - before.area()) <= sameArea * std::max(view.area(), before.area()))
            return finished(before.isRoomy() ? before : view, angle);
        if (view.whole) {
            if (view.isClosed() && view.region->sidesTouched() < 3)
                return finished(view, angle);
            break;
        }
        before = std::move(view);
    }
    return anyInk ? failure(LetterCut::NoLetter, tr("What lies here reaches too far to be a letter."))
                  : failure(LetterCut::NoInk, tr("There is no ink here."));
}

} // namespace kerval::letters
