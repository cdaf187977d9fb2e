#include "rest/http/NewRequestEvent.h"

NewRequestEvent::NewRequestEvent(const fms::FMSRequest& request, int connectionId)
    : QEvent(EventType)
    , m_request(request)
    , m_connectionId(connectionId)
{
}

NewRequestEvent::~NewRequestEvent() = default;
