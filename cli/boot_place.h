// Where the boot service works: on which adapter, and whether a PC with the wanted address would
// reach this computer there.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "boot/local_address.h"
#include "cli/adapter_choice.h"
#include "core/udp_socket.h"
#include "link/network_interfaces.h"

namespace omniset {

// `wanted` as for chooseAdapter; when it is empty, the adapter on whose subnet the client address
// (network byte order) is; where adapters have no names the system finds that one, and the choice
// is chooseAdapter's. `addresses` are all of this computer. Raises BadInput and Failure.
AdapterChoice chooseBootAdapter(const std::vector<NetworkInterface>& adapters,
                                const std::string& wanted, std::uint32_t clientAddress,
                                LocalAddresses& addresses);

// Opens the service's ports for a moment. Raises Failure with a sentence when that does not work.
void checkBootPorts(const std::function<std::unique_ptr<UdpSocket>()>& makeSocket,
                    const std::string& shownName);

// Why the service failed, in a sentence that says what to do; `systemText` is the exception's.
std::string bootServiceFailure(const std::string& systemText, const std::string& shownName);

// What the service does, for the operator: "Answering boot requests on eth1; PCs get
// 192.168.88.20."
std::string bootSentence(const AdapterChoice& choice, std::uint32_t clientAddress);

}  // namespace omniset
