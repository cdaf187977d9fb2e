#include "fontfile/InkBounds.h"

void InkBounds::add(int y, int count, const FT_Span* spans)
{
    if (count <= 0)
        return;
    // FreeType hands over rows upwards, but splits complicated outlines into bands that may go back.
    top = bottom == INT_MIN ? -y : qMin(top, -y);
    bottom = qMax(bottom, -y);
    const FT_Span& first = spans[0];
    const FT_Span& last = spans[count - 1];
    if (first.coverage != 0)
        left = qMin(left, int(first.x));
    if (last.coverage != 0)
        right = qMax(right, last.x + last.len - 1);
}
