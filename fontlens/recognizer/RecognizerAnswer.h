#pragma once

#include <QByteArray>
#include <QString>

namespace kerval::recognizer {

// Status 4xx or 5xx: the request was wrong or could not be served; the text says why. A request that was right but
// came to nothing (a place without a letter, an address without a picture) answers 200 with a text that begins with
// "error: ": clients take every other status for a broken connection.
struct RecognizerAnswer
{
    int status = 0;
    QByteArray contentType;
    QByteArray body;

    static RecognizerAnswer text(int status, const QString& text);
    static RecognizerAnswer pictureId(const QString& id);
    static RecognizerAnswer picture(const QByteArray& bytes, const QByteArray& contentType);
    static RecognizerAnswer xml(const QByteArray& document);
    static RecognizerAnswer nothing(const QString& reason);
};

} // namespace kerval::recognizer
