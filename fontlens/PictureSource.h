#pragma once

#include <QImage>
#include <QString>
#include <QUrl>

class QMimeData;

// Where a picture comes from that the user drops, pastes or names. At most one of the three is set; none of them means
// that there is no picture.
struct PictureSource
{
    QImage image;
    QString file;
    QUrl url; // http or https, with a host

    bool isEmpty() const { return image.isNull() && file.isEmpty() && url.isEmpty(); }

    // What is dragged or lies in the clipboard: the picture itself, else a file, else an address. Text counts when it
    // is an address or the path of a file.
    static PictureSource fromMimeData(const QMimeData* data);
    // An address as a user types it, "http://" left out or not.
    static PictureSource fromText(const QString& text);

    // Turned as its camera says. Pictures of more than eight megapixels are reduced to that many as they are read,
    // since letters do not gain from more and the service takes no more; what would be more than 250 is refused. Null
    // when the file is no picture.
    static QImage load(const QString& file);
    static QImage reduced(const QImage& image);
};
