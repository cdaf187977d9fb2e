#pragma once

#include <QHostAddress>
#include <QString>
#include <QStringList>

class QHttpRequest;
class QUrl;

namespace api::rest {

// Who may use the interface. The listener is bound to every interface of the machine and web pages can reach it from
// the user's browser, so three things are looked at before a request is read any further:
//  - the peer's address has to be one of this machine's own, unless remote clients are allowed;
//  - the Host header has to be an address or a name of this machine: a page that had a name of its own point here (DNS
//    rebinding) sends that name;
//  - a changing request must not come from a web page of another machine, unless that page's origin is trusted. Origins
//    that are no web page's (a plug-in's panel is a local file, "null") are let through.
class AccessPolicy
{
public:
    AccessPolicy() = default;
    AccessPolicy(bool allowRemote, const QStringList& trustedOrigins);
    // As settings.ini has it now.
    static AccessPolicy fromSettings();

    bool allows(const QHttpRequest& request) const;

    // For what is nobody's business outside this machine: remote clients are refused even where they are allowed, and
    // pages for reading as well. A page is known by its origin, "null" included, or by what browsers tell of the site
    // that a request comes from.
    bool allowsPrivately(const QHttpRequest& request) const;

    bool allowsPeer(const QHostAddress& peer) const;
    static bool allowsHost(const QString& hostHeader);
    bool allowsOrigin(int method, const QString& origin) const;

private:
    bool isFriendlyPage(const QUrl& origin) const;

    bool m_allowRemote = false;
    QStringList m_trustedOrigins;
};

} // namespace api::rest
