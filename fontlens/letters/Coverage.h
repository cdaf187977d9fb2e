#pragma once

#include <QImage>

#include <cstddef>
#include <vector>

namespace kerval::letters {

// Ink as numbers, mostly between 0 and 1, top row first.
struct Coverage
{
    int width = 0;
    int height = 0;
    std::vector<float> values;

    Coverage() = default;
    Coverage(int columns, int rows)
        : width(columns)
        , height(rows)
        , values(std::size_t(columns) * std::size_t(rows))
    {
    }

    bool isEmpty() const { return values.empty(); }
    float* row(int y) { return values.data() + std::ptrdiff_t(y) * width; }
    const float* row(int y) const { return values.data() + std::ptrdiff_t(y) * width; }

    // Black on white, and back; transparency counts as white.
    static Coverage fromImage(const QImage& image);
    QImage toImage() const;

    // Averaged down by any factor up to 1.
    Coverage reduced(double factor) const;
    // White on all sides, or fewer pixels for negative margins.
    Coverage withMargin(int margin) const;
    // Cut down to where the ink reaches the level; empty when it nowhere does.
    Coverage cropped(float level, QPoint* corner = nullptr) const; // the corner: what was its first pixel
    // Turned clockwise about the middle, on a canvas that holds all of it.
    Coverage turned(double degrees) const;
    // Smoothed by a bell of this width; the size stays.
    void blur(double sigma);

    // Parts at half coverage that touch by side or corner; those smaller than the share of the largest do not count.
    int parts(double share) const;
};

} // namespace kerval::letters
