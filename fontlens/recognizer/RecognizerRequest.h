#pragma once

#include <QByteArray>

namespace kerval::recognizer {

// One request of the recognition protocol as it came over HTTP, nothing decoded yet.
struct RecognizerRequest
{
    enum class Script
    {
        Modules,    // pictures, letters and previews
        Similarity, // fonts for letters
        ShopLink
    };

    Script script = Script::Modules;
    bool isPost = false;
    QByteArray query; // percent-encoded, without the question mark
    QByteArray contentType;
    QByteArray body;
};

} // namespace kerval::recognizer
