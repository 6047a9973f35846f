// The Ethernet adapters of this computer.
#pragma once

#include <string>
#include <vector>

#include "core/mac_address.h"

namespace omniset {

struct NetworkInterface {
  std::string name;  // the system's name; empty on Windows, where adapters are only numbered
  MacAddress mac;
};

class NetworkInterfaces {
 public:
  virtual ~NetworkInterfaces() = default;
  // The adapters that are up, in the system's order.
  virtual std::vector<NetworkInterface> list() = 0;
};

class SystemNetworkInterfaces : public NetworkInterfaces {
 public:
  std::vector<NetworkInterface> list() override;
};

// The MAC addresses of the adapters in their order, ended by an all-zero entry; each is traced with
// its index, counted from 0.
std::vector<MacAddress> findInterfaces(NetworkInterfaces& interfaces);

}  // namespace omniset
