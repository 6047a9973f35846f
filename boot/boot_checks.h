// What can be in the way of the network boot service, told in sentences for the operator.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "boot/local_address.h"
#include "core/udp_socket.h"

namespace omniset {

// This computer has an address by which others could reach it. Raises Error "GetIpAddrTable".
bool hasNetworkAddress(LocalAddresses& addresses);

// Why a PC with this address (network byte order) would not reach this computer; nothing when it
// should. Raises Error "GetIpAddrTable".
std::optional<std::string> clientAddressProblem(std::uint32_t clientAddress,
                                                LocalAddresses& addresses);

// Opens the ports of BOOTP and TFTP for a moment, to see that nobody else has them, another service
// of this kind included. Not while this process has one. Raises SocketExc.
void tryBootPorts(const std::function<std::unique_ptr<UdpSocket>()>& makeSocket);

// What to do when the service ended with an exception of this text.
std::string bootFailureText(std::string_view exceptionText);

}  // namespace omniset
