#pragma once

#include "rest/AccessPolicy.h"
#include "rest/ResourceHandler.h"
#include "rest/http/QHttpServer.h"

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QRegularExpression>
#include <QSharedPointer>
#include <QVector>
#include <map>
#include <memory>
#include <string>

class FontManagementService;
class QHttpRequest;
class QHttpResponse;

namespace api::rest {

class DeferredResourceHandler;

// The REST/JSON interface of the running service. Routes are tried in the order in which they were added; the first
// whose pattern matches the whole decoded path answers. Main thread only.
//
// While the service is not started, the library's resources answer 503.
class Server : public QObject
{
    Q_OBJECT

public:
    struct Route
    {
        QString pattern;
        ResourceHandler::Methods methods;
    };

    // Adds the routes of the library's resources.
    explicit Server(const QSharedPointer<FontManagementService>& service, QObject* parent = nullptr);
    ~Server() override;

    // Appends a route; takes the handler over.
    void addHandler(const std::string& pattern, ResourceHandler* handler);
    QVector<Route> routes() const;

    // On all interfaces; who is answered there is read from the settings now.
    bool listen(quint16 port);
    void close();
    // 0 while not listening.
    quint16 port() const;
    void setAccessPolicy(const AccessPolicy& policy);

private slots:
    void prepareRequest(QHttpRequest* request, QHttpResponse* response);
    void onBodyLoaded();

private:
    struct RouteEntry
    {
        std::string pattern;
        QRegularExpression expression;
        std::shared_ptr<ResourceHandler> handler; // shared with the requests it is answering
        bool needsLibrary;
    };

    void addResources(const QSharedPointer<FontManagementService>& service);
    void addRoute(const std::string& pattern, ResourceHandler* handler, bool needsLibrary);
    bool isLibraryOpen() const;
    const RouteEntry* findRoute(const QString& path) const;
    void begin(QHttpRequest* request, const QPointer<QHttpResponse>& response, DeferredResourceHandler& handler);
    static void dispatch(QHttpRequest* request, const QPointer<QHttpResponse>& response,
                         const std::shared_ptr<ResourceHandler>& handler);
    static void sendHead(QHttpResponse* response, int status, const ResourceHandler::Headers& headers, bool isPrivate);
    static void send(QHttpResponse* response, int status, const ResourceHandler::Headers& headers,
                     const QByteArray& body, bool isPrivate);
    static void refuse(QHttpResponse* response, int statusCode);

    QHttpServer m_httpServer;
    std::vector<RouteEntry> m_routes;
    QSharedPointer<FontManagementService> m_service;
    QHash<QHttpRequest*, QHttpResponse*> m_pending;
    std::map<QHttpResponse*, std::shared_ptr<void>> m_deferred; // the answers that are being worked on
    AccessPolicy m_accessPolicy;
};

} // namespace api::rest
