#pragma once

#include <QByteArray>
#include <QImage>
#include <QPoint>
#include <QString>
#include <QVector>

namespace testpictures {

// Letters set apart from each other, black on white, and a place in the ink of each.
struct SetLetters
{
    QImage picture;
    QVector<QPoint> places;
};
SetLetters setLetters(const QString& fontFile, const QString& letters, int pixelSize);

QByteArray encoded(const QImage& image, const char* format = "PNG");
// A PNG header that announces this size, and nothing worth it behind.
QByteArray pngClaiming(quint32 width, quint32 height);
// A grey picture with a dark square in it.
QImage plainPicture(int width, int height);

} // namespace testpictures
