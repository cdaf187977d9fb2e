#pragma once

#include "rest/JsonWriter.h"

#include <QHash>
#include <QPair>
#include <QSharedPointer>
#include <QString>
#include <QUrl>
#include <optional>

class FontGroup;
class FontManagementService;
class QHttpRequest;

namespace fms {
class StaticFont;
}

namespace api::rest {

// "http://host:port" as the client addressed this service.
QUrl requestOrigin(const QHttpRequest& request);

// Writes font objects. One object serves one answer and one thread: it remembers long texts that fonts share, and URLs,
// in the form in which they are written.
class FontJson
{
public:
    FontJson(const FontManagementService& service, const QUrl& origin);

    // The position is the "#" of lists; a single font has none.
    void write(JsonWriter& json, const fms::StaticFont& font, std::optional<int> position = std::nullopt);

    // What the member writers call.
    void writeText(JsonWriter& json, const QString& text);
    void writeUrl(JsonWriter& json, const QString& text);

private:
    QSharedPointer<FontGroup> m_systemFonts;
    QSharedPointer<FontGroup> m_duplicateFonts;
    QString m_charactersUrl;
    QHash<const QChar*, QPair<QString, QByteArray>> m_longTexts; // by the address of shared data, which is kept
    QHash<QString, QString> m_urls;
};

} // namespace api::rest
