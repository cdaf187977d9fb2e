#include "qtService/app/RecognizerResourceHandler.h"

#include "fontlens/recognizer/Recognizer.h"
#include "rest/http/HttpLimits.h"

#include <QUrl>

using kerval::recognizer::Recognizer;
using kerval::recognizer::RecognizerAnswer;
using kerval::recognizer::RecognizerRequest;

namespace {

// A picture of 20 MiB and the form around it.
constexpr qint64 uploadBytes = 20 * 1024 * 1024 + 64 * 1024;

api::rest::ResourceHandler::Methods methodsOf(RecognizerRequest::Script script)
{
    if (script == RecognizerRequest::Script::Modules)
        return {QHttpRequest::HTTP_GET, QHttpRequest::HTTP_POST};
    return {QHttpRequest::HTTP_GET};
}

} // namespace

RecognizerResourceHandler::RecognizerResourceHandler(const std::shared_ptr<Recognizer>& recognizer, Script script)
    : DeferredResourceHandler(methodsOf(script))
    , m_recognizer(recognizer)
    , m_script(script)
{
}

const char* RecognizerResourceHandler::pattern(Script script)
{
    switch (script) {
    case Script::Modules:
        return "/query/norvik/krvmodules\\.cgi";
    case Script::Similarity:
        return "/query/norvik/ocrsim\\.php";
    default:
        return "/php/norvik/GetBuyFontLinks\\.php";
    }
}

qint64 RecognizerResourceHandler::bodyLimit() const
{
    return m_script == Script::Modules ? uploadBytes : HttpLimits().bodyBytes;
}

bool RecognizerResourceHandler::isPrivate() const
{
    return true;
}

std::shared_ptr<void> RecognizerResourceHandler::begin(const QHttpRequest& request, const Reply& reply)
{
    RecognizerRequest asked;
    asked.script = m_script;
    asked.isPost = request.method() == QHttpRequest::HTTP_POST;
    asked.query = request.url().query(QUrl::FullyEncoded).toLatin1();
    asked.contentType = request.header(QStringLiteral("content-type")).toLatin1();
    asked.body = request.body();
    return m_recognizer->begin(asked, [reply](const RecognizerAnswer& answer) {
        Answer sent;
        sent.status = answer.status;
        sent.body = answer.body;
        sent.headers.insert(QStringLiteral("Content-Type"), QString::fromLatin1(answer.contentType));
        sent.headers.insert(QStringLiteral("Content-Length"), QString::number(answer.body.size()));
        // Pictures are kept for a while only, and are not for others to find in a cache.
        sent.headers.insert(QStringLiteral("Cache-Control"), QStringLiteral("no-store"));
        sent.headers.insert(QStringLiteral("X-Content-Type-Options"), QStringLiteral("nosniff"));
        sent.headers.insert(QStringLiteral("Cross-Origin-Resource-Policy"), QStringLiteral("same-origin"));
        reply(sent);
    });
}
