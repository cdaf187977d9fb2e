#include "rest/AccessPolicy.h"

#include "qtService/app/core/FMSSettings.h"
#include "rest/http/QHttpRequest.h"

#include <QHostInfo>
#include <QNetworkInterface>
#include <QUrl>

#include <algorithm>

namespace api::rest {

namespace {

// The listener serves both protocols with one socket, so IPv4 peers come as ::ffff:a.b.c.d.
QHostAddress plainAddress(QHostAddress address)
{
    bool isIpv4 = false;
    const quint32 ipv4 = address.toIPv4Address(&isIpv4);
    if (isIpv4)
        return QHostAddress(ipv4);
    address.setScopeId(QString());
    return address;
}

bool isOwnAddress(const QHostAddress& candidate)
{
    const QHostAddress address = plainAddress(candidate);
    if (address.isLoopback())
        return true;
    const auto own = QNetworkInterface::allAddresses();
    return std::any_of(own.cbegin(), own.cend(), [&](const QHostAddress& a) { return plainAddress(a) == address; });
}

bool isOwnName(const QString& name)
{
    const auto equals = [&name](const QString& own) { return name.compare(own, Qt::CaseInsensitive) == 0; };
    if (equals(QStringLiteral("localhost")) || name.endsWith(QLatin1String(".localhost"), Qt::CaseInsensitive))
        return true;
    const QString host = QHostInfo::localHostName();
    if (host.isEmpty())
        return false;
    const QString domain = QHostInfo::localDomainName();
    return equals(host) || (!domain.isEmpty() && equals(host + QLatin1Char('.') + domain));
}

// "host", "host:port" or "[address]:port" without the port and the dot that may end a name.
QString hostWithoutPort(const QString& header)
{
    QString host = header.trimmed();
    if (host.startsWith(QLatin1Char('['))) {
        const int end = host.indexOf(QLatin1Char(']'));
        return end < 0 ? host : host.mid(1, end - 1);
    }
    host = host.section(QLatin1Char(':'), 0, 0);
    if (host.endsWith(QLatin1Char('.')))
        host.chop(1);
    return host;
}

// Scheme, host and port, so that spellings of one origin are equal; empty when the text is none.
QString normalizedOrigin(const QString& text)
{
    const QUrl url(text.trimmed(), QUrl::StrictMode);
    if (!url.isValid() || url.scheme().isEmpty() || url.host().isEmpty())
        return QString();
    const int standardPort = url.scheme() == QLatin1String("https") ? 443 : 80;
    return url.scheme() + QLatin1String("://") + url.host() + QLatin1Char(':') +
           QString::number(url.port(standardPort));
}

bool isChanging(int method)
{
    return method == QHttpRequest::HTTP_POST || method == QHttpRequest::HTTP_PUT ||
           method == QHttpRequest::HTTP_PATCH || method == QHttpRequest::HTTP_DELETE;
}

} // namespace

AccessPolicy::AccessPolicy(bool allowRemote, const QStringList& trustedOrigins)
    : m_allowRemote(allowRemote)
{
    for (const QString& origin : trustedOrigins) {
        const QString normalized = normalizedOrigin(origin);
        if (!normalized.isEmpty())
            m_trustedOrigins.append(normalized);
    }
}

AccessPolicy AccessPolicy::fromSettings()
{
    const FMSSettings settings;
    return AccessPolicy(settings.allowRemote(), settings.trustedOrigins());
}

bool AccessPolicy::allows(const QHttpRequest& request) const
{
    return allowsPeer(QHostAddress(request.remoteAddress())) && allowsHost(request.header(QStringLiteral("host"))) &&
           allowsOrigin(request.method(), request.header(QStringLiteral("origin")));
}

bool AccessPolicy::allowsPeer(const QHostAddress& peer) const
{
    return m_allowRemote || isOwnAddress(peer);
}

bool AccessPolicy::allowsHost(const QString& hostHeader)
{
    // Only old clients send none; browsers always do.
    if (hostHeader.isEmpty())
        return true;
    const QString host = hostWithoutPort(hostHeader);
    return !QHostAddress(host).isNull() || isOwnName(host);
}

bool AccessPolicy::allowsOrigin(int method, const QString& origin) const
{
    if (!isChanging(method))
        return true;
    const QUrl url(origin.trimmed());
    if (url.scheme() != QLatin1String("http") && url.scheme() != QLatin1String("https"))
        return true;
    return isFriendlyPage(url);
}

bool AccessPolicy::isFriendlyPage(const QUrl& origin) const
{
    return isOwnName(origin.host()) || isOwnAddress(QHostAddress(origin.host())) ||
           m_trustedOrigins.contains(normalizedOrigin(origin.toString()));
}

bool AccessPolicy::allowsPrivately(const QHttpRequest& request) const
{
    if (!isOwnAddress(QHostAddress(request.remoteAddress())) || !allowsHost(request.header(QStringLiteral("host"))))
        return false;
    const QString origin = request.header(QStringLiteral("origin")).trimmed();
    if (!origin.isEmpty())
        return isFriendlyPage(QUrl(origin));
    // Pictures and scripts are fetched without an origin.
    const QString site = request.header(QStringLiteral("sec-fetch-site")).trimmed().toLower();
    return site != QLatin1String("cross-site");
}

} // namespace api::rest
