#pragma once

#include <QString>

// One line of a broken text and its width in pixels. KrvFontMetrics::wrapText() gives heap objects; who asked for them
// deletes them.
struct WrappedLine
{
    QString text;
    int width = 0;
};
