#include "rest/CharacterPreviewResourceHandler.h"

#include "fontfile/KrvFontFile.h"
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
    KrvFontFile file(font.fileName());
    if (!file.open(font.faceIndex()) || file.glyphIndexOf(character) == 0)
        return QImage();
    return drawText(font, QString::fromUcs4(&character, 1), pixelSize(parameters));
}

} // namespace api::rest
