#pragma once

#include "rest/AbstractPreviewResourceHandler.h"

namespace api::rest {

// "/text-previews": a text in a font as PNG, at a size or fitted to a height.
class PreviewResourceHandler : public AbstractPreviewResourceHandler
{
public:
    explicit PreviewResourceHandler(const QSharedPointer<FontManagementService>& service);

protected:
    int get(QHttpRequest* request, Headers* headers, QByteArray* body) override;
    QImage draw(const fms::StaticFont& font, const Parameters& parameters) const override;

private:
    static QImage drawAtHeight(const fms::StaticFont& font, const QString& text, int height);
};

} // namespace api::rest
