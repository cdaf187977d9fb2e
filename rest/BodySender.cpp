#include "rest/BodySender.h"

#include "rest/http/QHttpResponse.h"

#include <QDebug>
#include <QtConcurrentRun>

#include <exception>
#include <utility>

namespace api::rest {

BodySender::BodySender(QHttpResponse* response, StreamedBody::NextPiece next)
    : QObject(response)
    , m_response(response)
    , m_next(std::move(next))
{
    connect(m_response, &QHttpResponse::allBytesWritten, this, &BodySender::onAllWritten);
    // The connection waits for the end, though nobody reads it.
    connect(m_response, &QHttpResponse::abandoned, m_response, [response] { response->end(); });
    connect(&m_making, &QFutureWatcher<QByteArray>::finished, this, &BodySender::onMade);
    makeNext();
}

void BodySender::makeNext()
{
    m_making.setFuture(QtConcurrent::run([next = m_next] {
        try {
            return next();
        } catch (const std::exception& error) {
            qWarning() << "E_0_"
                       << "An answer ends early:" << error.what();
            return QByteArray();
        }
    }));
}

void BodySender::onMade()
{
    m_isMade = true;
    if (!m_isSending)
        send();
}

void BodySender::onAllWritten()
{
    m_isSending = false;
    if (m_isMade)
        send();
}

void BodySender::send()
{
    if (m_response->isFinished())
        return;
    m_isMade = false;
    const QByteArray piece = m_making.result();
    if (piece.isEmpty()) {
        m_response->end();
        return;
    }
    m_isSending = true;
    makeNext();
    m_response->write(piece);
}

} // namespace api::rest
