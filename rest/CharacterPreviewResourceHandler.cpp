#include "rest/CharacterPreviewResourceHandler.h"

#include "fontfile/KrvFontFile.h"
#include "fontfile/KrvFontPainter.h"
#include "qtService/database/StaticFont.h"

namespace api::rest {

CharacterPreviewResourceHandler::CharacterPreviewResourceHandler(const QSharedPointer<FontManagementService>& service)
    : AbstractPreviewResourceHandler(service)
{
}

QImage CharacterPreviewResourceHandler::draw(const fms::StaticFont& font, const Parameters& parameters) const
{
    const uint character = parameters.value(QStringLiteral("character")).toUInt();
    if (character == 0 || character > QChar::LastValidCodePoint || QChar::isSurrogate(character))
        return QImage();
    const int pixels = pixelSize(parameters);
    KrvFontFile file(font.fileName());
    if (pixels <= 0 || pixels > maximumSide || !file.open(font.faceIndex()))
        return QImage();
    // The character's own glyph, not a text of it: marks have no width of their own, and text hides some characters.
    QImage image;
    file.setPixelSize(pixels);
    KrvFontPainter::renderGlyph(file, file.glyphIndexOf(character), 0xff000000, &image);
    return image;
}

} // namespace api::rest
