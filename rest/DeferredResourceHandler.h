#pragma once

#include "rest/ResourceHandler.h"

#include <functional>
#include <memory>

namespace api::rest {

// Answers the requests of one route later, without an event loop of its own: however many answers are being worked on,
// each goes out when it is ready. For work that takes long or waits for others.
class DeferredResourceHandler : public ResourceHandler
{
public:
    struct Answer
    {
        int status = 0;
        Headers headers;
        QByteArray body;
    };
    using Reply = std::function<void(const Answer& answer)>;

    using ResourceHandler::ResourceHandler;

    // Whether a request of this method is begun on; the others are handled at once.
    virtual bool defers(QHttpRequest::HttpMethod method) const { return methods().count(method) != 0; }

    // Begins on a request that has arrived whole, for a method that is deferred. `reply` is called on the main thread,
    // once, now or later. The work lives as long as what is returned: it is dropped when the client has left or the
    // server goes, and must then be given up; replies are ignored from there on. A reply may drop the work before it
    // returns. The request is good for this call only.
    virtual std::shared_ptr<void> begin(const QHttpRequest& request, const Reply& reply) = 0;
};

} // namespace api::rest
