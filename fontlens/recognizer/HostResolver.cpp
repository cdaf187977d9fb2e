#include "fontlens/recognizer/HostResolver.h"

#include <QHostInfo>
#include <QObject>

namespace kerval::recognizer {

HostResolver::~HostResolver() = default;

std::shared_ptr<void> HostResolver::lookUp(const QString& host, const Found& found)
{
    // Dropping the receiver is enough: the answer of a lookup without one goes nowhere.
    auto receiver = std::make_shared<QObject>();
    QHostInfo::lookupHost(host, receiver.get(), [found](const QHostInfo& info) {
        const auto call = found; // the call may drop the receiver and what it holds
        call(info.addresses());
    });
    return receiver;
}

} // namespace kerval::recognizer
