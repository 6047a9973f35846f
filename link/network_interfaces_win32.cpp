#include <windows.h>

#include <nb30.h>

#include <algorithm>
#include <array>
#include <cstring>

#include "link/network_interfaces.h"

namespace omniset {

namespace {

constexpr std::size_t kStatusLength = 600;

NCB commandFor(UCHAR command, UCHAR adapter) {
  NCB block{};
  block.ncb_command = command;
  block.ncb_lana_num = adapter;
  return block;
}

void resetAdapter(UCHAR adapter) {
  NCB block = commandFor(NCBRESET, adapter);
  Netbios(&block);
}

// False when the adapter gives no status, as one without NetBIOS does.
bool readAddress(UCHAR adapter, MacAddress& mac) {
  alignas(8) std::array<UCHAR, kStatusLength> answer{};
  NCB block = commandFor(NCBASTAT, adapter);
  std::memset(block.ncb_callname, ' ', sizeof block.ncb_callname);
  block.ncb_callname[0] = '*';
  block.ncb_buffer = answer.data();
  block.ncb_length = static_cast<WORD>(answer.size());
  if (Netbios(&block) != NRC_GOODRET) return false;
  std::copy_n(answer.begin(), mac.bytes.size(), mac.bytes.begin());
  return true;
}

}  // namespace

std::vector<NetworkInterface> SystemNetworkInterfaces::list() {
  LANA_ENUM adapters{};
  NCB block = commandFor(NCBENUM, 0);
  block.ncb_buffer = reinterpret_cast<PUCHAR>(&adapters);
  block.ncb_length = sizeof adapters;
  std::vector<NetworkInterface> found;
  if (Netbios(&block) != NRC_GOODRET) return found;
  for (int i = 0; i < adapters.length; ++i) {
    NetworkInterface interface;
    resetAdapter(adapters.lana[i]);
    if (readAddress(adapters.lana[i], interface.mac)) found.push_back(interface);
  }
  return found;
}

}  // namespace omniset
