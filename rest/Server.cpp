#include "rest/Server.h"

#include "rest/BodySender.h"
#include "rest/DeferredResourceHandler.h"
#include "rest/http/HttpRequestParser.h"
#include "rest/http/QHttpRequest.h"
#include "rest/http/QHttpResponse.h"

#include <QDebug>

#include <algorithm>
#include <exception>
#include <utility>

namespace api::rest {

Server::Server(const QSharedPointer<FontManagementService>& service, QObject* parent)
    : QObject(parent)
    , m_service(service)
{
    addResources(service);
    HttpLimits limits;
    limits.bodyBytesOf = [this, common = limits.bodyBytes](const HttpRequestHead& head) {
        const RouteEntry* route = findRoute(head.url.path(QUrl::FullyDecoded));
        return route ? route->handler->bodyLimit() : common;
    };
    m_httpServer.setLimits(limits);
    connect(&m_httpServer, &QHttpServer::newRequest, this, &Server::prepareRequest);
}

Server::~Server()
{
    // The work must find no server to answer to while it is being dropped.
    const auto dropped = std::exchange(m_deferred, {});
}

void Server::addHandler(const std::string& pattern, ResourceHandler* handler)
{
    addRoute(pattern, handler, false);
}

void Server::addRoute(const std::string& pattern, ResourceHandler* handler, bool needsLibrary)
{
    // PCRE instead of the standard library's expressions, which recurse for each character of a path.
    const QRegularExpression expression(QRegularExpression::anchoredPattern(QString::fromStdString(pattern)));
    Q_ASSERT(expression.isValid());
    m_routes.push_back({pattern, expression, std::shared_ptr<ResourceHandler>(handler), needsLibrary});
}

QVector<Server::Route> Server::routes() const
{
    QVector<Route> routes;
    for (const RouteEntry& entry : m_routes)
        routes.append({QString::fromStdString(entry.pattern), entry.handler->methods()});
    return routes;
}

bool Server::listen(quint16 port)
{
    m_accessPolicy = AccessPolicy::fromSettings();
    return m_httpServer.listen(port);
}

void Server::close()
{
    m_httpServer.close();
}

quint16 Server::port() const
{
    return m_httpServer.serverPort();
}

void Server::setAccessPolicy(const AccessPolicy& policy)
{
    m_accessPolicy = policy;
}

void Server::prepareRequest(QHttpRequest* request, QHttpResponse* response)
{
    const RouteEntry* route = findRoute(request->path());
    const bool isPrivate = route && route->handler->isPrivate();
    if (isPrivate ? !m_accessPolicy.allowsPrivately(*request) : !m_accessPolicy.allows(*request)) {
        response->setHeader(QStringLiteral("Connection"), QStringLiteral("close"));
        response->setHeader(QStringLiteral("Content-Length"), QStringLiteral("0"));
        response->writeHead(QHttpResponse::STATUS_FORBIDDEN);
        response->end();
        return;
    }
    connect(request, &QHttpRequest::data, request, &QHttpRequest::appendBody);
    connect(request, &QHttpRequest::end, this, &Server::onBodyLoaded);
    m_pending.insert(request, response);
    // The HTTP layer answers by itself when a body grows too large, and drops what does not arrive whole.
    connect(response, &QObject::destroyed, this, [this, request, response] {
        if (m_pending.value(request) == response)
            m_pending.remove(request);
    });
}

void Server::onBodyLoaded()
{
    auto* request = qobject_cast<QHttpRequest*>(sender());
    const QPointer<QHttpResponse> response = m_pending.take(request);
    if (!request || !response || response->isFinished() || !request->isComplete())
        return;
    const RouteEntry* route = findRoute(request->path());
    if (!route) {
        refuse(response, QHttpResponse::STATUS_NOT_FOUND);
    } else if (route->needsLibrary && !isLibraryOpen()) {
        refuse(response, QHttpResponse::STATUS_SERVICE_UNAVAILABLE);
    } else {
        auto* deferred = dynamic_cast<DeferredResourceHandler*>(route->handler.get());
        if (deferred && deferred->defers(QHttpRequest::HttpMethod(request->method())))
            begin(request, response, *deferred);
        else
            dispatch(request, response, std::shared_ptr<ResourceHandler>(route->handler));
    }
}

const Server::RouteEntry* Server::findRoute(const QString& path) const
{
    const auto route = std::find_if(m_routes.cbegin(), m_routes.cend(), [&path](const RouteEntry& entry) {
        return entry.expression.match(path).hasMatch();
    });
    return route == m_routes.cend() ? nullptr : &*route;
}

void Server::begin(QHttpRequest* request, const QPointer<QHttpResponse>& response, DeferredResourceHandler& handler)
{
    QHttpResponse* const key = response;
    const auto forget = [this, key] {
        // Dropping the work may call back; by then it must not be found any more.
        const auto entry = m_deferred.find(key);
        if (entry == m_deferred.end())
            return;
        const std::shared_ptr<void> work = std::move(entry->second);
        m_deferred.erase(entry);
    };
    m_deferred.emplace(key, nullptr);
    connect(response, &QObject::destroyed, this, forget);
    connect(response, &QHttpResponse::abandoned, this, [response, forget] {
        forget();
        if (response)
            response->end(); // nobody reads it, but the connection waits for it
    });
    const QPointer<Server> guard(this);
    const auto reply = [guard, response, forget, isPrivate = handler.isPrivate()](const auto& answer) {
        if (!guard || !response || response->isFinished())
            return;
        send(response, answer.status, answer.headers, answer.body, isPrivate);
        forget();
    };
    std::shared_ptr<void> work;
    try {
        work = handler.begin(*request, reply);
    } catch (const std::exception& error) {
        qWarning() << "E_0_"
                   << "A request failed:" << error.what();
        DeferredResourceHandler::Answer failed;
        failed.status = QHttpResponse::STATUS_INTERNAL_SERVER_ERROR;
        reply(failed);
    }
    const auto entry = m_deferred.find(key);
    if (entry != m_deferred.end())
        entry->second = std::move(work);
}

void Server::sendHead(QHttpResponse* response, int status, const ResourceHandler::Headers& headers, bool isPrivate)
{
    QStringList names = headers.keys();
    names.sort();
    for (const QString& name : qAsConst(names))
        response->setHeader(name, headers.value(name));
    if (!isPrivate) {
        response->setHeader(QStringLiteral("Access-Control-Allow-Origin"), QStringLiteral("*"));
        response->setHeader(QStringLiteral("Access-Control-Expose-Headers"), names.join(QLatin1String(", ")));
    }
    response->writeHead(status);
}

void Server::send(QHttpResponse* response, int status, const ResourceHandler::Headers& headers, const QByteArray& body,
                  bool isPrivate)
{
    sendHead(response, status, headers, isPrivate);
    response->write(body);
    response->end();
}

void Server::refuse(QHttpResponse* response, int statusCode)
{
    response->writeHead(statusCode);
    response->end();
}

// Static, with a handler of its own share: while a handler waits in an event loop the server may be destroyed.
void Server::dispatch(QHttpRequest* request, const QPointer<QHttpResponse>& response,
                      const std::shared_ptr<ResourceHandler>& handler)
{
    ResourceHandler::Headers headers;
    QByteArray body;
    StreamedBody::NextPiece nextPiece;
    int status = QHttpResponse::STATUS_INTERNAL_SERVER_ERROR;
    try {
        // Asked for first: the request is good only as long as no handler has waited.
        auto* streamed = dynamic_cast<StreamedBody*>(handler.get());
        if (streamed && request->method() == QHttpRequest::HTTP_GET)
            nextPiece = streamed->body(*request);
        status = handler->handle(request, &headers, &body);
    } catch (const std::exception& error) {
        // An answer too large for the memory must not end the service.
        qWarning() << "E_0_"
                   << "A request failed:" << error.what();
        headers.clear();
        body.clear();
    }
    if (!response || response->isFinished())
        return;

    if (nextPiece && status == QHttpResponse::STATUS_OK) {
        sendHead(response, status, headers, handler->isPrivate());
        new BodySender(response, nextPiece);
    } else {
        send(response, status, headers, body, handler->isPrivate());
    }
}

} // namespace api::rest
