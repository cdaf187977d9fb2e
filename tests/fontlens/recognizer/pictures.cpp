#include "tests/fontlens/recognizer/pictures.h"

#include "fontfile/KrvFontPainter.h"

#include <QBuffer>
#include <QPainter>
#include <QtEndian>

namespace testpictures {

namespace {

QByteArray pngChunk(const QByteArray& type, const QByteArray& data)
{
    quint32 crc = 0xffffffff;
    const QByteArray summed = type + data;
    for (const char byte : summed) {
        crc ^= uchar(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xedb88320u : 0);
    }
    QByteArray chunk(4, 0);
    qToBigEndian(quint32(data.size()), chunk.data());
    QByteArray end(4, 0);
    qToBigEndian(~crc, end.data());
    return chunk + summed + end;
}

} // namespace

SetLetters setLetters(const QString& fontFile, const QString& letters, int pixelSize)
{
    const int cell = pixelSize * 2;
    SetLetters set;
    set.picture = QImage(cell * letters.size(), cell, QImage::Format_RGB32);
    set.picture.fill(Qt::white);
    for (int i = 0; i < letters.size(); ++i) {
        PixelSizePreviewRequest request;
        request.pixelSize = pixelSize;
        request.text = letters.at(i);
        QImage glyph;
        if (!KrvFontPainter::renderPixelPreview(fontFile, request, &glyph, 0) || glyph.isNull())
            qFatal("cannot draw %s", qPrintable(fontFile));
        const QPoint corner(cell * i + (cell - glyph.width()) / 2, (cell - glyph.height()) / 2);
        QPainter(&set.picture).drawImage(corner, glyph);
        QPoint place;
        for (int y = 0; y < glyph.height() && place.isNull(); ++y) {
            for (int x = 0; x < glyph.width() && place.isNull(); ++x) {
                if (qGray(set.picture.pixel(corner + QPoint(x, y))) < 40)
                    place = corner + QPoint(x, y);
            }
        }
        set.places.append(place);
    }
    return set;
}

QByteArray encoded(const QImage& image, const char* format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (!buffer.open(QIODevice::WriteOnly) || !image.save(&buffer, format))
        qFatal("cannot write %s", format);
    return bytes;
}

QByteArray pngClaiming(quint32 width, quint32 height)
{
    QByteArray header(8, 0);
    qToBigEndian(width, header.data());
    qToBigEndian(height, header.data() + 4);
    header += QByteArray("\x08\x02\x00\x00\x00", 5);
    return "\x89PNG\r\n\x1a\n" + pngChunk("IHDR", header) + pngChunk("IDAT", qCompress(QByteArray(100, 0)).mid(4)) +
           pngChunk("IEND", {});
}

QImage plainPicture(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::lightGray);
    QPainter(&image).fillRect(QRect(width / 4, height / 4, width / 2, height / 2), Qt::black);
    return image;
}

} // namespace testpictures
