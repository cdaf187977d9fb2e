#pragma once

#include "fontlens/letters/ColourPatch.h"

#include <QList>
#include <QPolygonF>

#include <vector>

namespace kerval::letters {

// The ink that is connected to some points of a patch, whose background has been subtracted.
class LetterRegion
{
public:
    enum Verdict
    {
        Background, // a point has no ink near it
        Open,       // the ink goes on beyond the patch
        Closed
    };

    // Points and cut lines in pixels of the patch; sides of the patch that are sides of the picture do not count as
    // going on. The threshold is that of LetterCutter, the distance that up to which a point may miss the ink.
    LetterRegion(const ColourPatch& patch, const QList<QPointF>& points, int threshold, double missDistance,
                 const QList<QPolygonF>& cutLines, const Qt::Edges pictureEdges);

    // What differs from the background by less is no ink at this threshold.
    static float leastContrast(const ColourPatch& patch, int threshold);

    Verdict verdict() const { return m_verdict; }
    int area() const { return m_area; }
    QRect box() const { return m_box; }
    // Ink touches this many sides of the patch.
    int sidesTouched() const;
    // The region's coverage with its soft edge, which is shared with neighbours half way; the size of the box and a
    // margin.
    Coverage ink() const;
    QPoint inkCorner() const; // of the ink's first pixel, in the patch

private:
    bool findInk(const ColourPatch& patch, const QPointF& point, double missDistance, float leastContrast);
    bool seed(const QPointF& point, double missDistance);
    void block(int width, int height, const QList<QPolygonF>& cutLines);
    void grow(std::vector<int> open);
    void refineInk(const ColourPatch& patch);
    void reset();

    Coverage m_coverage; // of the whole patch
    Coverage m_smooth;   // the same without noise, by which is decided
    std::vector<char> m_state;
    ColourPatch::Colour m_ink{};
    float m_noise = 0;
    float m_level = 0.5F;
    std::vector<int> m_seeds;
    int m_area = 0;
    QRect m_box;
    Verdict m_verdict = Background;
};

} // namespace kerval::letters
