#pragma once

#include "rest/StreamedBody.h"

#include <QFutureWatcher>
#include <QObject>

class QHttpResponse;

namespace api::rest {

// Sends a body piece by piece behind a head that is written already, and ends the response. While the client takes one
// piece the next is made on a pool thread, so that a body of any size costs the memory of two pieces and none of the
// main thread's time. Belongs to the response and goes with it.
class BodySender : public QObject
{
    Q_OBJECT

public:
    BodySender(QHttpResponse* response, StreamedBody::NextPiece next);

private:
    void makeNext();
    void send();
    void onAllWritten();
    void onMade();

    QHttpResponse* m_response;
    const StreamedBody::NextPiece m_next;
    QFutureWatcher<QByteArray> m_making;
    bool m_isMade = false;    // the next piece waits
    bool m_isSending = false; // the client has not taken the last one yet
};

} // namespace api::rest
