#include "fontlens/letters/LetterCutter.h"

#include "fontlens/letters/LetterRegion.h"

#include <QTransform>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <optional>

namespace kerval::letters {

namespace {

constexpr int firstReach = 40; // pixels around the points that are looked at first; doubled until it is enough
constexpr int lastReach = 4096;
constexpr int lastWhiteReach = 1280; // the same for letters that are clicked in their white
constexpr int mostWhitePoints = 8;
constexpr int mostEdge = 24;      // pixels of a blurred edge
constexpr int mostNeighbours = 8; // that lie nearer to such a click than its letter
constexpr int mostCutLinePoints = 10000;
constexpr double sameArea = 0.12; // two views of a letter agree when their areas differ by less
constexpr double margin = 0.08;   // of the cut letter's larger side
constexpr double onePixel = 1;

QPointF middleOf(const QPoint& pixel)
{
    return QPointF(pixel) + QPointF(0.5, 0.5);
}

LetterCut failure(LetterCut::Error error, const QString& text)
{
    LetterCut result;
    result.error = error;
    result.text = text;
    return result;
}

struct View
{
    std::unique_ptr<ColourPatch> patch;
    std::unique_ptr<LetterRegion> region;
    QList<QPolygonF> cutLines; // in pixels of the patch
    Qt::Edges edges;
    bool whole = false;

    bool isClosed() const { return region && region->verdict() == LetterRegion::Closed; }
    double area() const { return region->area() * patch->reduction() * patch->reduction(); }
    bool isRoomy(const LetterRegion& letter) const
    {
        return letter.box().width() * 5 < patch->width() * 3 && letter.box().height() * 5 < patch->height() * 3;
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
    view.edges.setFlag(Qt::LeftEdge, part.left() == all.left());
    view.edges.setFlag(Qt::TopEdge, part.top() == all.top());
    view.edges.setFlag(Qt::RightEdge, part.right() == all.right());
    view.edges.setFlag(Qt::BottomEdge, part.bottom() == all.bottom());
    QList<QPointF> inPatch;
    for (const QPoint& point : points)
        inPatch.append(view.patch->fromPicture(middleOf(point)));
    for (const QPolygon& cutLine : cutLines) {
        QPolygonF line;
        for (const QPoint& point : cutLine)
            line.append(view.patch->fromPicture(point));
        view.cutLines.append(line);
    }
    view.region = std::make_unique<LetterRegion>(*view.patch, inPatch, threshold, std::max(onePixel, miss),
                                                 view.cutLines, view.edges);
    return view;
}

// From a soft edge into the stroke.
QPoint strongestFrom(const ColourPatch& patch, QPoint at)
{
    for (int step = 0; step < mostEdge; ++step) {
        QPoint next = at;
        float strongest = ColourPatch::length(patch.at(at.x(), at.y()));
        for (int y = std::max(0, at.y() - 1); y <= std::min(patch.height() - 1, at.y() + 1); ++y) {
            for (int x = std::max(0, at.x() - 1); x <= std::min(patch.width() - 1, at.x() + 1); ++x) {
                if (ColourPatch::length(patch.at(x, y)) > strongest) {
                    strongest = ColourPatch::length(patch.at(x, y));
                    next = QPoint(x, y);
                }
            }
        }
        if (next == at)
            break;
        at = next;
    }
    return at;
}

// The nearest ink of a letter in whose box the point lies, in pixels of the patch.
std::optional<QPoint> inkAround(const View& view, const QPointF& point, int threshold)
{
    const ColourPatch& patch = *view.patch;
    const float least = LetterRegion::leastContrast(patch, threshold);
    QList<QRect> others;
    while (others.size() < mostNeighbours) {
        double nearest = std::numeric_limits<double>::max();
        QPoint found;
        for (int y = 0; y < patch.height(); ++y) {
            for (int x = 0; x < patch.width(); ++x) {
                const double distance = std::hypot(x + 0.5 - point.x(), y + 0.5 - point.y());
                if (distance >= nearest || ColourPatch::length(patch.at(x, y)) < least)
                    continue;
                const auto holds = [x, y](const QRect& box) { return box.contains(x, y); };
                if (std::none_of(others.cbegin(), others.cend(), holds)) {
                    nearest = distance;
                    found = QPoint(x, y);
                }
            }
        }
        if (nearest == std::numeric_limits<double>::max())
            return std::nullopt;
        const QPoint edge = found;
        found = strongestFrom(patch, edge);
        const LetterRegion letter(patch, {middleOf(found)}, threshold, onePixel, view.cutLines, view.edges);
        const bool isLetter = letter.verdict() == LetterRegion::Closed && view.isRoomy(letter);
        if (isLetter && QRectF(letter.box()).contains(point))
            return found;
        if (letter.verdict() == LetterRegion::Open)
            return std::nullopt; // it may be the one; a larger view will tell
        others.append((letter.box() | QRect(found, QSize(1, 1)) | QRect(edge, QSize(1, 1))).adjusted(-1, -1, 1, 1));
    }
    return std::nullopt;
}

// For a click into the white of a letter (the middle of an o, the mouth of a c): a point in its ink.
std::optional<QPoint> inkAround(const QImage& picture, const QPoint& point, int threshold,
                                const QList<QPolygon>& cutLines)
{
    for (int reach = firstReach; reach <= lastWhiteReach; reach *= 2) {
        const View view = look(picture, {point}, reach, threshold, cutLines);
        // Near by, the white may itself look like ink on black.
        if (view.region->verdict() == LetterRegion::Background) {
            const auto found = inkAround(view, view.patch->fromPicture(middleOf(point)), threshold);
            if (found) {
                const QPointF at = view.patch->toPicture(middleOf(*found));
                return QPoint(int(at.x()), int(at.y()));
            }
        }
        if (view.whole)
            break;
    }
    return std::nullopt;
}

LetterCut finished(const View& view, int angle, const QPoint& click)
{
    Coverage ink = view.region->ink();
    QPointF at = view.patch->fromPicture(middleOf(click)) - view.region->inkCorner();
    if (angle % 360 != 0) {
        const QPointF before(0.5 * ink.width, 0.5 * ink.height);
        ink = ink.turned(angle % 360);
        at = QTransform().rotate(angle % 360).map(at - before) + QPointF(0.5 * ink.width, 0.5 * ink.height);
    }
    QPoint corner;
    ink = ink.cropped(0.1F, &corner);
    if (ink.isEmpty())
        return failure(LetterCut::NoInk, LetterCutter::tr("There is no ink here."));
    const int white = 2 + int(margin * std::max(ink.width, ink.height));
    ink = ink.withMargin(white);
    LetterCut result;
    result.click = at - corner + QPointF(white, white);
    result.image = ink.toImage();
    result.scale = 1 / view.patch->reduction();
    return result;
}

LetterCut cutAt(const QImage& picture, const QList<QPoint>& points, const QPoint& click, int angle, int threshold,
                const QList<QPolygon>& cutLines)
{
    // What looks like a letter from near may be the white inside of one: two views must agree.
    View before;
    bool anyInk = false;
    for (int reach = firstReach; reach <= lastReach; reach *= 2) {
        View view = look(picture, points, reach, threshold, cutLines);
        anyInk = view.region->verdict() != LetterRegion::Background;
        if (before.isClosed() && view.isClosed() &&
            std::abs(view.area() - before.area()) <= sameArea * std::max(view.area(), before.area()))
            return finished(before.isRoomy(*before.region) ? before : view, angle, click);
        if (view.whole) {
            if (view.isClosed() && view.region->sidesTouched() < 3)
                return finished(view, angle, click);
            break;
        }
        before = std::move(view);
    }
    return anyInk ? failure(LetterCut::NoLetter, LetterCutter::tr("What lies here reaches too far to be a letter."))
                  : failure(LetterCut::NoInk, LetterCutter::tr("There is no ink here."));
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

    const QPoint click = inside.first();
    LetterCut cut = cutAt(picture, inside, click, angle, threshold, cutLines);
    if (inside.size() > 1)
        cut.click = QPointF();
    if ((cut.error != LetterCut::NoInk && cut.error != LetterCut::NoLetter) || inside.size() > mostWhitePoints)
        return cut;
    bool anyMoved = false;
    for (QPoint& point : inside) {
        const auto ink = inkAround(picture, point, threshold, cutLines);
        anyMoved = anyMoved || ink;
        point = ink.value_or(point);
    }
    if (anyMoved)
        cut = cutAt(picture, inside, click, angle, threshold, cutLines);
    if (inside.size() > 1)
        cut.click = QPointF();
    return cut;
}

} // namespace kerval::letters
