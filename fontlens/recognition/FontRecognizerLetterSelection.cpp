#include "fontlens/recognition/FontRecognizerLetterSelection.h"

namespace FontRecognizer {

FontRecognizerLetterSelection::FontRecognizerLetterSelection(const QString& imageId, const QImage& image)
    : m_imageId(imageId)
    , m_image(image)
{
}

void FontRecognizerLetterSelection::setImageId(const QString& imageId)
{
    m_imageId = imageId;
}

void FontRecognizerLetterSelection::setImage(const QImage& image)
{
    m_image = image;
}

void FontRecognizerLetterSelection::setCharacter(QChar character)
{
    m_character = character;
    emit characterChanged();
}

} // namespace FontRecognizer
