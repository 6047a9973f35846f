#include <winsock.h>

#include <iphlpapi.h>

#include <array>
#include <cstddef>

#include "boot/local_address.h"
#include "core/error.h"
#include "core/os_error.h"

namespace omniset {

namespace {
constexpr std::size_t kTableLength = 4096;
}  // namespace

std::vector<LocalAddress> SystemLocalAddresses::list() {
  alignas(MIB_IPADDRTABLE) std::array<BYTE, kTableLength> buffer{};
  auto* table = reinterpret_cast<MIB_IPADDRTABLE*>(buffer.data());
  ULONG length = buffer.size();
  const DWORD result = GetIpAddrTable(table, &length, FALSE);
  if (result != NO_ERROR) {
    setLastOsError(static_cast<long>(result));
    throw Error("GetIpAddrTable");
  }
  std::vector<LocalAddress> addresses;
  for (DWORD i = 0; i < table->dwNumEntries; ++i) {
    const MIB_IPADDRROW& row = table->table[i];
    addresses.push_back({row.dwIndex, row.dwAddr, row.dwMask, {}});
  }
  return addresses;
}

}  // namespace omniset
