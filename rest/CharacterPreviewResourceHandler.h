#pragma once

#include "rest/AbstractPreviewResourceHandler.h"

namespace api::rest {

// "/character-previews": one character of a font as PNG. A character that the font does not have is refused.
class CharacterPreviewResourceHandler : public AbstractPreviewResourceHandler
{
public:
    explicit CharacterPreviewResourceHandler(const QSharedPointer<FontManagementService>& service);

protected:
    QImage draw(const fms::StaticFont& font, const Parameters& parameters) const override;
};

} // namespace api::rest
