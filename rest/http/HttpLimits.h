#pragma once

#include <QtGlobal>

#include <functional>

struct HttpRequestHead;

// What one client, and all of them together, can make the HTTP layer hold. Tests make these small.
struct HttpLimits
{
    int headerBytes = 64 * 1024;        // request line and headers of one request
    qint64 bodyBytes = 8 * 1024 * 1024; // beyond it: 413
    // When set, asked for each request instead; called while the request is being parsed.
    std::function<qint64(const HttpRequestHead& head)> bodyBytesOf;
    int connections = 128;             // beyond it an idle or stalled one goes, or the newcomer gets 503
    int idleMilliseconds = 60 * 1000;  // without progress; also the time the headers have to arrive
    int lingerMilliseconds = 2 * 1000; // how long a refused client may go on sending what is thrown away;
                                       // when it gets crowded, how long any client may stand still
};
