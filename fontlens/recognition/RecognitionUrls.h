#pragma once

#include <QString>

namespace FontRecognizer {

// Where the recognition service answers: complete addresses, made once from the host, which is the caller's to know
// ("host" or "host:port"; plain HTTP). An empty host gives empty addresses, to which every request fails.
struct RecognitionUrls
{
    explicit RecognitionUrls(const QString& host);

    QString moduleScript;     // upload, download, letters, images, previews
    QString similarityScript; // matching fonts
    QString shopLinkScript;
};

} // namespace FontRecognizer
