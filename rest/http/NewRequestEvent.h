#pragma once

#include "rest/http/FMSRequest.h"

#include <QEvent>

// Carries a "LISTEN" request to the object that FMSTcpServerWorker was given; the connection id names the client that
// stays connected for the answer.
class NewRequestEvent : public QEvent
{
public:
    static constexpr QEvent::Type EventType = QEvent::Type(QEvent::User + 2);

    NewRequestEvent(const fms::FMSRequest& request, int connectionId);
    ~NewRequestEvent() override;

    const fms::FMSRequest& request() const { return m_request; }
    int connectionId() const { return m_connectionId; }

private:
    fms::FMSRequest m_request;
    int m_connectionId;
};
