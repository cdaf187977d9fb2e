#include "rest/http/HttpRequestParser.h"

#include <http_parser.h>

#include <limits>

namespace {

// The library's numbers follow its version; ours are fixed. Methods without a number of ours keep their distance.
int methodNumber(unsigned method)
{
    switch (method) {
    case HTTP_DELETE:
        return QHttpRequest::HTTP_DELETE;
    case HTTP_GET:
        return QHttpRequest::HTTP_GET;
    case HTTP_HEAD:
        return QHttpRequest::HTTP_HEAD;
    case HTTP_POST:
        return QHttpRequest::HTTP_POST;
    case HTTP_PUT:
        return QHttpRequest::HTTP_PUT;
    case HTTP_CONNECT:
        return QHttpRequest::HTTP_CONNECT;
    case HTTP_OPTIONS:
        return QHttpRequest::HTTP_OPTIONS;
    case HTTP_TRACE:
        return QHttpRequest::HTTP_TRACE;
    case HTTP_COPY:
        return QHttpRequest::HTTP_COPY;
    case HTTP_LOCK:
        return QHttpRequest::HTTP_LOCK;
    case HTTP_MKCOL:
        return QHttpRequest::HTTP_MKCOL;
    case HTTP_MOVE:
        return QHttpRequest::HTTP_MOVE;
    case HTTP_PROPFIND:
        return QHttpRequest::HTTP_PROPFIND;
    case HTTP_PROPPATCH:
        return QHttpRequest::HTTP_PROPPATCH;
    case HTTP_SEARCH:
        return QHttpRequest::HTTP_SEARCH;
    case HTTP_UNLOCK:
        return QHttpRequest::HTTP_UNLOCK;
    case HTTP_REPORT:
        return QHttpRequest::HTTP_REPORT;
    case HTTP_MKACTIVITY:
        return QHttpRequest::HTTP_MKACTIVITY;
    case HTTP_CHECKOUT:
        return QHttpRequest::HTTP_CHECKOUT;
    case HTTP_MERGE:
        return QHttpRequest::HTTP_MERGE;
    case HTTP_MSEARCH:
        return QHttpRequest::HTTP_MSEARCH;
    case HTTP_NOTIFY:
        return QHttpRequest::HTTP_NOTIFY;
    case HTTP_SUBSCRIBE:
        return QHttpRequest::HTTP_SUBSCRIBE;
    case HTTP_UNSUBSCRIBE:
        return QHttpRequest::HTTP_UNSUBSCRIBE;
    case HTTP_PATCH:
        return QHttpRequest::HTTP_PATCH;
    case HTTP_PURGE:
        return QHttpRequest::HTTP_PURGE;
    default:
        return QHttpRequest::HTTP_PURGE + 1 + int(method);
    }
}

bool splitUrl(const QByteArray& text, bool isConnect, QUrl& url)
{
    http_parser_url parts;
    http_parser_url_init(&parts);
    if (http_parser_parse_url(text.constData(), size_t(text.size()), isConnect ? 1 : 0, &parts) != 0)
        return false;
    const auto has = [&parts](http_parser_url_fields field) { return (parts.field_set & (1 << field)) != 0; };
    const auto part = [&](http_parser_url_fields field) {
        return QString::fromLatin1(text.constData() + parts.field_data[field].off, parts.field_data[field].len);
    };
    url = QUrl();
    if (has(UF_SCHEMA))
        url.setScheme(part(UF_SCHEMA));
    if (has(UF_HOST))
        url.setHost(part(UF_HOST));
    // The client's percent signs are escapes; the default mode of setPath() would escape them once more.
    if (has(UF_PATH))
        url.setPath(part(UF_PATH), QUrl::TolerantMode);
    if (has(UF_QUERY))
        url.setQuery(part(UF_QUERY), QUrl::TolerantMode);
    if (has(UF_FRAGMENT))
        url.setFragment(part(UF_FRAGMENT), QUrl::TolerantMode);
    if (has(UF_USERINFO))
        url.setUserInfo(part(UF_USERINFO), QUrl::TolerantMode);
    if (has(UF_PORT))
        url.setPort(parts.port);
    return true;
}

} // namespace

HttpRequestParser::Sink::~Sink() = default;

struct HttpRequestParser::Private
{
    Private(Sink& sinkUsed, const HttpLimits& limitsUsed)
        : sink(sinkUsed)
        , limits(limitsUsed)
    {
        http_parser_init(&parser, HTTP_REQUEST);
        parser.data = this;
        http_parser_settings_init(&settings);
        settings.on_message_begin = [](http_parser* p) { return self(p).messageBegin(); };
        settings.on_url = [](http_parser* p, const char* at, size_t n) { return self(p).urlData(at, n); };
        settings.on_header_field = [](http_parser* p, const char* at, size_t n) { return self(p).fieldData(at, n); };
        settings.on_header_value = [](http_parser* p, const char* at, size_t n) { return self(p).valueData(at, n); };
        settings.on_headers_complete = [](http_parser* p) { return self(p).headersDone(); };
        settings.on_body = [](http_parser* p, const char* at, size_t n) { return self(p).bodyData(at, n); };
        settings.on_message_complete = [](http_parser* p) { return self(p).messageDone(); };
    }

    static Private& self(http_parser* p) { return *static_cast<Private*>(p->data); }

    int messageBegin()
    {
        head = HttpRequestHead();
        field.clear();
        value.clear();
        inValue = false;
        urlBytes.clear();
        urlBytes.reserve(128);
        headerBytes = 0;
        bodyBytes = 0;
        sink.messageBegun();
        return 0;
    }

    bool countHeader(size_t n)
    {
        headerBytes += qint64(n);
        if (headerBytes <= limits.headerBytes)
            return true;
        state = State::HeadersTooLarge;
        return false;
    }

    int urlData(const char* at, size_t n)
    {
        if (!countHeader(n))
            return 1;
        urlBytes.append(at, int(n));
        return 0;
    }

    void storeHeader()
    {
        if (!field.isEmpty())
            head.headers.insert(field.toLower(), value);
        field.clear();
        value.clear();
        inValue = false;
    }

    int fieldData(const char* at, size_t n)
    {
        // The fixed part is what a header without name and value costs, so that empty ones are limited as well.
        if (!countHeader(n + (inValue ? 32 : 0)))
            return 1;
        if (inValue)
            storeHeader();
        field += QString::fromLatin1(at, int(n));
        return 0;
    }

    int valueData(const char* at, size_t n)
    {
        if (!countHeader(n))
            return 1;
        inValue = true;
        value += QString::fromLatin1(at, int(n));
        return 0;
    }

    int headersDone()
    {
        storeHeader();
        head.method = methodNumber(parser.method);
        head.httpVersion = QStringLiteral("%1.%2").arg(parser.http_major).arg(parser.http_minor);
        head.keepAlive = parser.http_major != 0 && parser.http_minor != 0 && http_should_keep_alive(&parser) != 0;
        if (!splitUrl(urlBytes, parser.method == HTTP_CONNECT, head.url)) {
            state = State::Malformed;
            return -1;
        }
        bodyLimit = limits.bodyBytesOf ? limits.bodyBytesOf(head) : limits.bodyBytes;
        constexpr auto unknownLength = std::numeric_limits<decltype(parser.content_length)>::max();
        if (parser.content_length != unknownLength && parser.content_length > quint64(bodyLimit)) {
            state = State::BodyTooLarge;
            return -1;
        }
        sink.headersComplete(head);
        return 0;
    }

    int bodyData(const char* at, size_t n)
    {
        bodyBytes += qint64(n);
        if (bodyBytes > bodyLimit) {
            state = State::BodyTooLarge;
            return 1;
        }
        sink.bodyReceived(QByteArray(at, int(n)));
        return 0;
    }

    int messageDone()
    {
        state = State::MessageComplete;
        http_parser_pause(&parser, 1);
        return 0;
    }

    Sink& sink;
    const HttpLimits limits;
    http_parser parser;
    http_parser_settings settings;
    State state = State::Reading;
    HttpRequestHead head;
    QByteArray urlBytes;
    QString field;
    QString value;
    bool inValue = false;
    qint64 headerBytes = 0;
    qint64 bodyBytes = 0;
    qint64 bodyLimit = 0;
};

HttpRequestParser::HttpRequestParser(Sink& sink, const HttpLimits& limits)
    : d(std::make_unique<Private>(sink, limits))
{
}

HttpRequestParser::~HttpRequestParser() = default;

int HttpRequestParser::feed(const QByteArray& data)
{
    // A size of zero would tell the library that the peer has closed.
    if (d->state != State::Reading || data.isEmpty())
        return 0;
    const size_t used = http_parser_execute(&d->parser, &d->settings, data.constData(), size_t(data.size()));
    if (d->state == State::Reading && HTTP_PARSER_ERRNO(&d->parser) != HPE_OK)
        d->state = HTTP_PARSER_ERRNO(&d->parser) == HPE_HEADER_OVERFLOW ? State::HeadersTooLarge : State::Malformed;
    return int(used);
}

HttpRequestParser::State HttpRequestParser::state() const
{
    return d->state;
}

void HttpRequestParser::resume()
{
    if (d->state != State::MessageComplete)
        return;
    http_parser_pause(&d->parser, 0);
    d->state = State::Reading;
}
