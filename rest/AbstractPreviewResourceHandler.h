#pragma once

#include "rest/LibraryResourceHandler.h"

#include <QImage>
#include <QRgb>
#include <QVector>

namespace fms {
class StaticFont;
}

namespace api::rest {

// What the two preview resources share: looking the font up, the size asked for, drawing, inverting, and the answer. A
// request for more than a page can show (a side of 16,384 pixels, a text of 10,000 characters) is refused, so that no
// preview eats the memory.
class AbstractPreviewResourceHandler : public LibraryResourceHandler
{
protected:
    using Parameters = QHash<QString, QString>;

    static constexpr int maximumSide = 16384;
    static constexpr int maximumLength = 10000;

    explicit AbstractPreviewResourceHandler(const QSharedPointer<FontManagementService>& service);

    int get(QHttpRequest* request, Headers* headers, QByteArray* body) override;

    // A null image when there is nothing to show.
    virtual QImage draw(const fms::StaticFont& font, const Parameters& parameters) const = 0;

    // "pixelSize", else "pointSize" at "dpi"; 0 when neither gives a size.
    static int pixelSize(const Parameters& parameters);
    static QImage drawText(const fms::StaticFont& font, const QString& text, int pixelSize);

private:
    void invert(QImage& image) const;

    QVector<QRgb> m_invertedColors; // white, with the entry's number as its alpha
};

} // namespace api::rest
