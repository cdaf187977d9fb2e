#pragma once

#include <QRect>

#include <ft2build.h>
#include FT_FREETYPE_H

#include <climits>

// The pixels that a rasteriser's spans cover, y growing downwards.
struct InkBounds
{
    int left = INT_MAX;
    int top = 0;
    int right = INT_MIN;
    int bottom = INT_MIN;

    void add(int y, int count, const FT_Span* spans);
    // Spans without coverage at both ends of every row leave no left or right.
    QRect rect() const { return left > right ? QRect() : QRect(QPoint(left, top), QPoint(right, bottom)); }
};
