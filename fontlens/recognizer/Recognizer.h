#pragma once

#include "fontlens/recognizer/RecognizerAnswer.h"
#include "fontlens/recognizer/RecognizerRequest.h"

#include <functional>
#include <memory>

class QUrl;

namespace kerval::recognizer {

// A recognition service: takes pictures, cuts letters out of them and names the fonts that the letters resemble. Main
// thread; nothing blocks.
class Recognizer
{
public:
    using Reply = std::function<void(const RecognizerAnswer& answer)>;

    virtual ~Recognizer();

    // `reply` is called once, now or later, with nothing of the recogniser on the stack that the caller could pull
    // away. The work is given up when what is returned goes (null when the reply has been called already); then there
    // is no reply.
    virtual std::shared_ptr<void> begin(const RecognizerRequest& request, const Reply& reply) = 0;

    // The user has typed this address. The next download of it, if it comes soon, may lead into the user's own network
    // or to this machine, where downloads never go otherwise.
    virtual void permitAddress(const QUrl& url) = 0;
};

} // namespace kerval::recognizer
