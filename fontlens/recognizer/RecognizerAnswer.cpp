#include "fontlens/recognizer/RecognizerAnswer.h"

namespace kerval::recognizer {

namespace {
const auto plainText = QByteArrayLiteral("text/plain; charset=utf-8");
}

RecognizerAnswer RecognizerAnswer::text(int status, const QString& text)
{
    return {status, plainText, text.toUtf8()};
}

RecognizerAnswer RecognizerAnswer::pictureId(const QString& id)
{
    return {200, plainText, id.toLatin1()};
}

RecognizerAnswer RecognizerAnswer::picture(const QByteArray& bytes, const QByteArray& contentType)
{
    return {200, contentType, bytes};
}

RecognizerAnswer RecognizerAnswer::xml(const QByteArray& document)
{
    return {200, QByteArrayLiteral("text/xml; charset=utf-8"), document};
}

RecognizerAnswer RecognizerAnswer::nothing(const QString& reason)
{
    return text(200, QLatin1String("error: ") + reason);
}

} // namespace kerval::recognizer
