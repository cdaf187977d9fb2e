#pragma once

#include "fontlens/recognizer/RecognizerRequest.h"
#include "rest/DeferredResourceHandler.h"

#include <memory>

namespace kerval::recognizer {
class Recognizer;
}

// One of the three paths of the recognition protocol: hands its requests to a recogniser. For programs of this machine
// alone, because pictures are nobody else's business. Main thread.
class RecognizerResourceHandler : public api::rest::DeferredResourceHandler
{
public:
    using Script = kerval::recognizer::RecognizerRequest::Script;

    RecognizerResourceHandler(const std::shared_ptr<kerval::recognizer::Recognizer>& recognizer, Script script);

    static const char* pattern(Script script);

    qint64 bodyLimit() const override;
    bool isPrivate() const override;
    std::shared_ptr<void> begin(const QHttpRequest& request, const Reply& reply) override;

private:
    std::shared_ptr<kerval::recognizer::Recognizer> m_recognizer;
    Script m_script;
};
