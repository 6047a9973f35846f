// A computer with the adapters that a test gives it.
#pragma once

#include <utility>
#include <vector>

#include "link/network_interfaces.h"

namespace omniset::test {

class FakeNetworkInterfaces : public NetworkInterfaces {
 public:
  explicit FakeNetworkInterfaces(std::vector<NetworkInterface> adapters)
      : adapters_(std::move(adapters)) {}
  std::vector<NetworkInterface> list() override { return adapters_; }

 private:
  std::vector<NetworkInterface> adapters_;
};

}  // namespace omniset::test
