// A computer with the IPv4 addresses that a test gives it.
#pragma once

#include <utility>
#include <vector>

#include "boot/local_address.h"
#include "core/ipv4_address.h"

namespace omniset::test {

constexpr std::uint32_t kMask24 = ipv4(255, 255, 255, 0);

class FakeLocalAddresses : public LocalAddresses {
 public:
  explicit FakeLocalAddresses(std::vector<LocalAddress> addresses)
      : addresses_(std::move(addresses)) {}
  std::vector<LocalAddress> list() override { return addresses_; }

 private:
  std::vector<LocalAddress> addresses_;
};

inline FakeLocalAddresses oneLocalAddress() {
  return FakeLocalAddresses({{2, ipv4(192, 168, 88, 5), kMask24, "eth0"}});
}

}  // namespace omniset::test
