#pragma once

#include <QByteArray>

#include <functional>

class QHttpRequest;

namespace api::rest {

// A handler whose answers to GET may be larger than the memory should hold. Its get() fills the headers and leaves the
// body empty; when it returns 200, the server asks for the body and sends it piece by piece.
class StreamedBody
{
public:
    // The next piece of a body; an empty one is its end. Called on pool threads, once at a time, and no more when the
    // client has left. What it needs it holds itself: server and handler may be gone by then.
    using NextPiece = std::function<QByteArray()>;

    virtual ~StreamedBody() = default;

    // The request is good for this call only.
    virtual NextPiece body(const QHttpRequest& request) = 0;
};

} // namespace api::rest
