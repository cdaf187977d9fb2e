#include "fontlens/recognizer/AddressRules.h"

#include <QNetworkInterface>
#include <QPair>

#include <algorithm>
#include <cstring>

namespace kerval::recognizer {

namespace {

struct Network4
{
    quint32 address;
    int bits;
};

constexpr quint32 ip4(quint32 a, quint32 b, quint32 c, quint32 d)
{
    return a << 24 | b << 16 | c << 8 | d;
}

// The special ranges of IPv4 as the address registry lists them.
constexpr Network4 closedNetworks[] = {
    {ip4(0, 0, 0, 0), 8},       {ip4(10, 0, 0, 0), 8},      {ip4(100, 64, 0, 0), 10},   {ip4(127, 0, 0, 0), 8},
    {ip4(169, 254, 0, 0), 16},  {ip4(172, 16, 0, 0), 12},   {ip4(192, 0, 0, 0), 24},    {ip4(192, 0, 2, 0), 24},
    {ip4(192, 31, 196, 0), 24}, {ip4(192, 52, 193, 0), 24}, {ip4(192, 88, 99, 0), 24},  {ip4(192, 168, 0, 0), 16},
    {ip4(192, 175, 48, 0), 24}, {ip4(198, 18, 0, 0), 15},   {ip4(198, 51, 100, 0), 24}, {ip4(203, 0, 113, 0), 24},
    {ip4(224, 0, 0, 0), 4},     {ip4(240, 0, 0, 0), 4},
};

bool isPublic4(quint32 address)
{
    return std::none_of(std::begin(closedNetworks), std::end(closedNetworks), [address](const Network4& network) {
        return (address ^ network.address) >> (32 - network.bits) == 0;
    });
}

quint32 embedded4(const Q_IPV6ADDR& address, int offset)
{
    return ip4(address[offset], address[offset + 1], address[offset + 2], address[offset + 3]);
}

bool startsWith(const Q_IPV6ADDR& address, std::initializer_list<quint8> bytes)
{
    int i = 0;
    return std::all_of(bytes.begin(), bytes.end(), [&](quint8 byte) { return address[i++] == byte; });
}

bool isPublic6(const Q_IPV6ADDR& address)
{
    if (startsWith(address, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xff, 0xff}))
        return isPublic4(embedded4(address, 12)); // mapped
    if (startsWith(address, {0x00, 0x64, 0xff, 0x9b, 0, 0, 0, 0, 0, 0, 0, 0}))
        return isPublic4(embedded4(address, 12)); // NAT64
    if (startsWith(address, {0x20, 0x02}))
        return isPublic4(embedded4(address, 2)); // 6to4
    if ((address[0] & 0xe0) != 0x20)
        return false; // outside 2000::/3, where all public unicast is
    // 2001::/23 are protocols (tunnels to IPv4 among them), the others documentation.
    const bool isProtocol = startsWith(address, {0x20, 0x01}) && (address[2] & 0xfe) == 0;
    return !isProtocol && !startsWith(address, {0x20, 0x01, 0x0d, 0xb8}) &&
           !(startsWith(address, {0x3f, 0xff}) && (address[2] & 0xf0) == 0);
}

bool isOfThisMachine(const QHostAddress& address)
{
    const auto own = QNetworkInterface::allAddresses();
    return std::any_of(own.cbegin(), own.cend(), [&address](const QHostAddress& candidate) {
        return candidate.isEqual(address, QHostAddress::TolerantConversion);
    });
}

} // namespace

bool isPublicAddress(const QHostAddress& address)
{
    // A zone names an interface of this machine: only local addresses need one.
    if (address.isNull() || !address.scopeId().isEmpty())
        return false;
    const bool isPublic = address.protocol() == QAbstractSocket::IPv4Protocol ? isPublic4(address.toIPv4Address())
                                                                              : isPublic6(address.toIPv6Address());
    return isPublic && !isOfThisMachine(address);
}

} // namespace kerval::recognizer
