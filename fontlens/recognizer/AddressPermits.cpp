#include "fontlens/recognizer/AddressPermits.h"

#include <QUrl>

#include <algorithm>

namespace kerval::recognizer {

namespace {

constexpr qint64 lifetimeMs = 60 * 1000;
constexpr int maximumPermits = 32;

// Fully decoded: on its way through a form an address may change which of its characters are escaped.
QString comparable(const QUrl& url)
{
    return QUrl::fromPercentEncoding(url.toEncoded());
}

} // namespace

AddressPermits::AddressPermits(const Clock& clock)
    : m_clock(clock)
{
}

void AddressPermits::add(const QUrl& url)
{
    forgetExpired();
    if (m_permits.size() == maximumPermits)
        m_permits.removeFirst();
    m_permits.append({comparable(url), m_clock()});
}

bool AddressPermits::take(const QUrl& url)
{
    forgetExpired();
    const QString address = comparable(url);
    const auto permit = std::find_if(m_permits.begin(), m_permits.end(),
                                     [&address](const Permit& candidate) { return candidate.address == address; });
    if (permit == m_permits.end())
        return false;
    m_permits.erase(permit);
    return true;
}

void AddressPermits::forgetExpired()
{
    const qint64 now = m_clock();
    const auto expired = [now](const Permit& permit) { return now - permit.given >= lifetimeMs; };
    m_permits.erase(std::remove_if(m_permits.begin(), m_permits.end(), expired), m_permits.end());
}

} // namespace kerval::recognizer
