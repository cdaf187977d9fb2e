#pragma once

#include "rest/ResourceHandler.h"

class FMService;

// "/service": identifies the running service, opens the window and fills the clipboard for plug-ins and launchers.
// Main thread.
class ServiceResourceHandler : public api::rest::ResourceHandler
{
public:
    explicit ServiceResourceHandler(FMService* service);

protected:
    int get(QHttpRequest* request, Headers* headers, QByteArray* body) override;
    int post(QHttpRequest* request, Headers* headers, QByteArray* body) override;

private:
    FMService* m_service;
};
