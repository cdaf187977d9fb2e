#pragma once

#include <QHostAddress>

// Which addresses lead out into the public network, and which into this machine or the network around it.
namespace kerval::recognizer {

// False for everything else than a unicast address that is routed publicly: loopback, private, shared (CGNAT),
// link-local and unique-local networks, multicast, broadcast, documentation and other special ranges, all of that also
// inside an IPv6 address (mapped, 6to4, NAT64), and every address of this machine itself.
bool isPublicAddress(const QHostAddress& address);

} // namespace kerval::recognizer
