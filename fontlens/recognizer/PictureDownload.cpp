#include "fontlens/recognizer/PictureDownload.h"

#include "fontlens/recognizer/AddressRules.h"

#include <QNetworkProxy>
#include <QNetworkReply>

#include <algorithm>
#include <utility>

namespace kerval::recognizer {

namespace {

int portOf(const QUrl& url)
{
    return url.port(url.scheme() == QLatin1String("https") ? 443 : 80);
}

bool isFetchable(const QUrl& url)
{
    return url.isValid() && (url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https")) &&
           !url.host().isEmpty() && portOf(url) > 0;
}

QByteArray hostHeader(const QUrl& url)
{
    QByteArray host = url.host(QUrl::FullyEncoded).toLatin1();
    if (host.contains(':'))
        host = '[' + host + ']';
    return url.port() < 0 ? host : host + ':' + QByteArray::number(url.port());
}

// Also from the standard port of HTTP to that of HTTPS, as many a host sends its visitors.
bool isSameService(const QUrl& from, const QUrl& to)
{
    const bool isUpgrade = portOf(from) == 80 && to.scheme() == QLatin1String("https") && portOf(to) == 443;
    return from.host() == to.host() && (portOf(from) == portOf(to) || isUpgrade);
}

bool isRedirect(int status)
{
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

} // namespace

DownloadEnvironment DownloadEnvironment::standard()
{
    DownloadEnvironment environment;
    environment.resolver = std::make_shared<HostResolver>();
    environment.isPublic = isPublicAddress;
    return environment;
}

PictureDownload::PictureDownload(const QUrl& url, bool isTyped, const DownloadEnvironment& environment)
    : m_typedUrl(isTyped ? url : QUrl())
    , m_environment(environment)
    , m_url(url)
{
    m_network.setProxy(QNetworkProxy::NoProxy);
    m_network.setRedirectPolicy(QNetworkRequest::ManualRedirectPolicy);
    m_total.setSingleShot(true);
    connect(&m_total, &QTimer::timeout, this, [this] { finish(TimedOut); });
    m_addressTimer.setSingleShot(true);
    connect(&m_addressTimer, &QTimer::timeout, this, &PictureDownload::onAddressTimeout);
}

PictureDownload::~PictureDownload()
{
    dropReply();
}

void PictureDownload::start()
{
    m_total.start(m_environment.totalMs);
    QMetaObject::invokeMethod(
        this, [this] { visit(m_url); }, Qt::QueuedConnection);
}

void PictureDownload::visit(const QUrl& url)
{
    m_url = url;
    if (!isFetchable(url)) {
        finish(m_redirects == 0 ? BadAddress : NotThere);
        return;
    }
    const QString host = url.host();
    const QHostAddress literal(host);
    if (!literal.isNull()) {
        onResolved({literal});
    } else if (m_known.contains(host)) {
        onResolved(m_known.value(host));
    } else {
        m_lookup = m_environment.resolver->lookUp(url.host(QUrl::FullyEncoded), [this, host](const auto& addresses) {
            m_known.insert(host, addresses);
            onResolved(addresses);
        });
    }
}

void PictureDownload::onResolved(const QList<QHostAddress>& addresses)
{
    if (m_isFinished)
        return;
    m_addresses = addresses;
    if (!isWhereTheUserPointed()) {
        const auto isClosed = [this](const QHostAddress& address) { return !m_environment.isPublic(address); };
        m_addresses.erase(std::remove_if(m_addresses.begin(), m_addresses.end(), isClosed), m_addresses.end());
    }
    if (m_addresses.isEmpty())
        finish(addresses.isEmpty() ? Unreachable : Refused);
    else
        requestNext();
}

bool PictureDownload::isWhereTheUserPointed() const
{
    return !m_typedUrl.isEmpty() && isSameService(m_typedUrl, m_url);
}

void PictureDownload::requestNext()
{
    const QHostAddress address = m_addresses.takeFirst();
    QUrl url = m_url;
    url.setUserInfo(QString());
    url.setFragment(QString());
    url.setHost(address.toString());
    QNetworkRequest request(url);
    request.setRawHeader("Host", hostHeader(m_url));
    request.setRawHeader("User-Agent", "Kerval/1.0");
    request.setRawHeader("Accept", "image/*");
    // Compressed answers would be unpacked before anybody could count their bytes.
    request.setRawHeader("Accept-Encoding", "identity");
    if (QHostAddress(m_url.host()).isNull())
        request.setPeerVerifyName(m_url.host(QUrl::FullyEncoded));
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    request.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    m_reply = m_network.get(request);
    m_reply->setReadBufferSize(256 * 1024);
    connect(m_reply, &QNetworkReply::metaDataChanged, this, &PictureDownload::onMetaData);
    connect(m_reply, &QNetworkReply::readyRead, this, &PictureDownload::onReadyRead);
    connect(m_reply, &QNetworkReply::finished, this, &PictureDownload::onReplyFinished);
    if (!m_addresses.isEmpty())
        m_addressTimer.start(m_environment.addressMs);
}

bool PictureDownload::announcesTooMuch(const QNetworkReply& reply) const
{
    return reply.header(QNetworkRequest::ContentLengthHeader).toLongLong() > m_environment.bytes;
}

void PictureDownload::onMetaData()
{
    m_addressTimer.stop();
    // Later: the reply does not bear being aborted from within this signal.
    if (announcesTooMuch(*m_reply))
        QMetaObject::invokeMethod(
            this, [this] { finish(TooLarge); }, Qt::QueuedConnection);
}

void PictureDownload::onReadyRead()
{
    m_addressTimer.stop();
    m_bytes += m_reply->readAll();
    if (m_bytes.size() > m_environment.bytes)
        finish(TooLarge);
}

void PictureDownload::onReplyFinished()
{
    m_addressTimer.stop();
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const auto error = m_reply->error();
    const QByteArray location = m_reply->rawHeader("Location");
    if (!isRedirect(status) && announcesTooMuch(*m_reply))
        finish(TooLarge);
    else if (!isRedirect(status))
        onReadyRead();
    if (m_isFinished)
        return;
    dropReply();
    if (isRedirect(status) && !location.isEmpty()) {
        m_bytes.clear();
        if (m_redirects == m_environment.redirects) {
            finish(NotThere);
            return;
        }
        ++m_redirects;
        visit(m_url.resolved(QUrl::fromEncoded(location)));
    } else if (status == 0) {
        m_bytes.clear();
        if (m_addresses.isEmpty())
            finish(Unreachable);
        else
            requestNext();
    } else if (status < 200 || status >= 300) {
        finish(NotThere);
    } else {
        finish(error == QNetworkReply::NoError ? Done : Unreachable);
    }
}

void PictureDownload::onAddressTimeout()
{
    dropReply();
    requestNext();
}

void PictureDownload::dropReply()
{
    if (!m_reply)
        return;
    QNetworkReply* reply = std::exchange(m_reply, nullptr);
    reply->disconnect(this);
    reply->abort();
    reply->deleteLater();
}

void PictureDownload::finish(Outcome outcome)
{
    if (m_isFinished)
        return;
    m_isFinished = true;
    m_total.stop();
    m_addressTimer.stop();
    m_lookup.reset();
    dropReply();
    if (outcome != Done)
        m_bytes.clear();
    emit finished(outcome);
}

} // namespace kerval::recognizer
