#include "boot/local_address.h"

#include <algorithm>

#include "core/ipv4_address.h"
#include "core/trace.h"

namespace omniset {

namespace {

bool isOnSubnet(std::uint32_t clientAddress, const LocalAddress& local) {
  return ((clientAddress ^ local.address) & local.mask) == 0;
}

}  // namespace

std::optional<LocalAddress> addressOnSubnetOf(std::uint32_t clientAddress,
                                              const std::vector<LocalAddress>& addresses) {
  const auto found =
      std::find_if(addresses.begin(), addresses.end(),
                   [&](const LocalAddress& local) { return isOnSubnet(clientAddress, local); });
  if (found == addresses.end()) return std::nullopt;
  return *found;
}

std::uint32_t findLocalAddress(std::uint32_t clientAddress, LocalAddresses& addresses) {
  const std::vector<LocalAddress> rows = addresses.list();
  traceLine("ip count: " + std::to_string(rows.size()));
  std::uint32_t result = rows.empty() ? 0 : rows[0].address;
  for (const LocalAddress& row : rows) {
    traceLine(std::to_string(row.index) + ": " + dottedQuad(row.address) + "/" +
              dottedQuad(row.mask));
    if (isOnSubnet(clientAddress, row)) {
      result = row.address;
      break;
    }
  }
  traceLine("my address: " + dottedQuad(result));
  return result;
}

}  // namespace omniset
