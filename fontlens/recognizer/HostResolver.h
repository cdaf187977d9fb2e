#pragma once

#include <QHostAddress>
#include <QList>
#include <QString>

#include <functional>
#include <memory>

namespace kerval::recognizer {

// Names to addresses, as the system does it.
class HostResolver
{
public:
    using Found = std::function<void(const QList<QHostAddress>& addresses)>;

    virtual ~HostResolver();

    // `found` is called later, on the calling thread, unless what is returned is dropped before. Empty: no such name.
    virtual std::shared_ptr<void> lookUp(const QString& host, const Found& found);
};

} // namespace kerval::recognizer
