#pragma once

#include "rest/http/HttpLimits.h"
#include "rest/http/HttpRequestParser.h"

#include <QByteArray>
#include <QObject>
#include <QPointer>
#include <QTimer>

class QHttpRequest;
class QHttpResponse;
class QTcpSocket;

// One client's connection: feeds the parser, announces each request when its headers are there, and answers what must
// not reach anybody (malformed or too large) by itself. Requests of one connection are handled one after another: what
// a client sends ahead waits in the socket until the answer before it has ended.
//
// It lives until its socket disconnects, but never shorter than the handling of a request that arrived whole.
class QHttpConnection : public QObject, private HttpRequestParser::Sink
{
    Q_OBJECT

public:
    // Takes the socket over.
    QHttpConnection(QTcpSocket* socket, const HttpLimits& limits, QObject* parent = nullptr);
    ~QHttpConnection() override;

    void write(const QByteArray& data);
    // Answers with a status and no body, then closes; what still arrives is thrown away.
    void refuse(int statusCode);
    // Between two requests, or before the first.
    bool isIdle() const;
    // How long its client has made no progress with a request or an answer; 0 while it waits for an answer.
    int stalledMilliseconds() const;

signals:
    void newRequest(QHttpRequest* request, QHttpResponse* response);
    void allBytesWritten();

private slots:
    void parseRequest();
    void responseDone();
    void socketDisconnected();
    void updateWriteCount(qint64 count);
    void onTimeout();

private:
    void messageBegun() override;
    void headersComplete(const HttpRequestHead& head) override;
    void bodyReceived(const QByteArray& data) override;
    QHttpResponse* createResponse();
    void completeRequest();
    bool isBeingHandled() const;
    void discardInput();
    void closeWhenWritten();

    enum class Phase
    {
        Serving,
        Refused, // answered before the request was complete: its rest is thrown away
        Closing
    };

    QTcpSocket* m_socket;
    const HttpLimits m_limits;
    HttpRequestParser m_parser;
    QByteArray m_unparsed;
    QPointer<QHttpRequest> m_request;
    QPointer<QHttpResponse> m_response; // not yet ended
    bool m_isFeeding = false;
    bool m_isDisconnected = false;
    Phase m_phase = Phase::Serving;
    qint64 m_transmitLength = 0;
    qint64 m_transmitPosition = 0;
    QTimer m_timer;
};
