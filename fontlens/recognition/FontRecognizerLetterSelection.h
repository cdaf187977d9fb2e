#pragma once

#include <QChar>
#include <QImage>
#include <QObject>
#include <QSharedPointer>
#include <QString>

namespace FontRecognizer {

// One letter that the user has selected in the picture: the cut-out that the service made of it, and the character
// that the user says it shows. The dynamic property "PointList" (a list of QPoint) holds the clicks, in pixels of the
// source picture, that made it.
class FontRecognizerLetterSelection : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QChar character READ character WRITE setCharacter NOTIFY characterChanged)

public:
    FontRecognizerLetterSelection(const QString& imageId, const QImage& image);

    QString imageId() const { return m_imageId; }
    void setImageId(const QString& imageId);
    QImage image() const { return m_image; }
    void setImage(const QImage& image);
    // Null until the user has typed one.
    QChar character() const { return m_character; }
    // Says characterChanged() even when nothing changes.
    void setCharacter(QChar character);

signals:
    void characterChanged();

private:
    QString m_imageId;
    QImage m_image;
    QChar m_character;
};

using FontRecognizerLetterSelectionPtr = QSharedPointer<FontRecognizerLetterSelection>;

} // namespace FontRecognizer
