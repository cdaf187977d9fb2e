#pragma once

#include "fontlens/recognizer/PictureStore.h"

namespace kerval::recognizer {

// What strangers send as a picture, made safe: the kind is told by the bytes (PNG, JPEG, GIF, BMP, WebP and nothing
// that can refer to other files), the size is looked at before anything is decoded, and what is larger than a person
// needs for finding letters is scaled down. Any thread; large pictures are decoded one at a time.
struct PictureDecoder
{
    struct Limits
    {
        qint64 decodedBytes = 256 * 1024 * 1024; // what decoding may take
        qint64 keptPixels = 24 * 1000 * 1000;    // larger ones are scaled down to this
    };
    enum Problem
    {
        NoProblem,
        NotAPicture,
        TooLarge
    };
    struct Result
    {
        Problem problem = NotAPicture;
        // The bytes are those that came in, unless the picture was scaled or turned upright.
        StoredPicture picture;
    };

    static Result decode(const QByteArray& bytes);
    static Result decode(const QByteArray& bytes, const Limits& limits);
    static StoredPicture fromImage(const QImage& image);
};

} // namespace kerval::recognizer
