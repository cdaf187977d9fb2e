#pragma once

#include "rest/http/HttpLimits.h"
#include "rest/http/QHttpRequest.h"

#include <QByteArray>
#include <QString>
#include <QUrl>
#include <memory>

// Request line and headers of one request, as they are known once the headers have ended.
struct HttpRequestHead
{
    int method = 0; // QHttpRequest::HttpMethod, or a higher number for methods that enumeration does not know
    QUrl url;
    QString httpVersion;
    HeaderHash headers; // lower-cased field name -> value; a repeated field keeps its last value
    bool keepAlive = false;
};

// Turns bytes into requests; knows no sockets. It stops behind every complete request, so that the owner can answer one
// before the next is looked at, and stays stopped for good after an error.
//
// The sink is called from inside feed() and must neither call feed() again nor destroy the parser; it may be handed
// body bytes in pieces of any size.
class HttpRequestParser
{
public:
    class Sink
    {
    public:
        virtual ~Sink();
        virtual void messageBegun() = 0;
        virtual void headersComplete(const HttpRequestHead& head) = 0;
        virtual void bodyReceived(const QByteArray& data) = 0;
    };

    enum class State
    {
        Reading,
        MessageComplete, // resume() goes on with the next request
        Malformed,
        HeadersTooLarge,
        BodyTooLarge
    };

    HttpRequestParser(Sink& sink, const HttpLimits& limits);
    ~HttpRequestParser();

    // Returns how many of the bytes were used: all of them, unless the state has left Reading.
    int feed(const QByteArray& data);
    State state() const;
    void resume();

private:
    struct Private;
    std::unique_ptr<Private> d;
};
