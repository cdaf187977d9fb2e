#pragma once

#include "fontlens/letters/Coverage.h"

#include <QImage>
#include <QRect>

#include <array>

namespace kerval::letters {

// A part of a picture as numbers, reduced when it is large, and what stands out from its background.
class ColourPatch
{
public:
    static constexpr int mostSide = 1200; // a larger part is reduced to this

    // The part must lie within the picture. Transparent parts count as white.
    ColourPatch(const QImage& picture, const QRect& part);

    int width() const { return m_width; }
    int height() const { return m_height; }
    double reduction() const { return m_reduction; } // pixels of the picture for each one here
    QPointF fromPicture(const QPointF& point) const;
    QPointF toPicture(const QPointF& point) const;

    // Replaces the colours by their difference to a smooth surface through the background: the quadratic on which most
    // of the pixels lie.
    void subtractBackground();

    using Colour = std::array<float, 3>;
    Colour at(int x, int y) const;
    // Length of a difference in grey levels.
    static float length(const Colour& colour);
    // Deviation of the noise in a channel, from differences of neighbours.
    float noise() const;
    // The differences as shares of this one: its length along it.
    Coverage along(const Colour& ink) const;

private:
    std::size_t place(int x, int y) const { return std::size_t(y) * std::size_t(m_width) + std::size_t(x); }

    int m_width = 0;
    int m_height = 0;
    double m_reduction = 1;
    QPoint m_corner;
    std::array<std::vector<float>, 3> m_channels;
};

} // namespace kerval::letters
