// The boot ROM's programming interface (PXE). Numbers in parameters are of the processor's byte
// order but for addresses of the network and ports, which are as on the wire.
#pragma once

#include <array>
#include <cstdint>

namespace omniset::loader {

// Segment in the high half, offset in the low half.
using FarAddress = std::uint32_t;
constexpr std::uint32_t physicalAddress(FarAddress address) {
  return (address >> 16) * 16 + (address & 0xFFFF);
}

enum class RomFunction : std::uint16_t {
  kCleanUpCard = 0x02,  // before version 2.1 in place of kStopCard
  kShutDownCard = 0x05,
  kStopCard = 0x15,
  kUdpOpen = 0x30,
  kUdpClose = 0x31,
  kUdpRead = 0x32,
  kUdpWrite = 0x33,
  kUnloadStack = 0x70,
  kGetCachedInfo = 0x71,
};

// What the parameters of every function begin with, and larger than those of the small ones.
struct RomParameters {
  std::uint16_t status = 0;
  std::array<std::uint8_t, 14> unused{};
};

enum class PacketType : std::uint16_t { kAcknowledgement = 2, kReply = 3 };

struct CachedInfoParameters {
  std::uint16_t status = 0;
  PacketType type{};
  std::uint16_t size = 0;
  std::uint16_t offset = 0;
  std::uint16_t segment = 0;
  std::uint16_t limit = 0;
};

struct [[gnu::packed]] UdpOpenParameters {
  std::uint16_t status = 0;
  std::uint32_t own = 0;
};

struct [[gnu::packed]] UdpReadParameters {
  std::uint16_t status = 0;
  std::uint32_t server = 0;
  std::uint32_t own = 0;
  std::uint16_t serverPort = 0;
  std::uint16_t ownPort = 0;
  std::uint16_t length = 0;
  std::uint16_t offset = 0;
  std::uint16_t segment = 0;
};

struct [[gnu::packed]] UdpWriteParameters {
  std::uint16_t status = 0;
  std::uint32_t server = 0;
  std::uint32_t gateway = 0;
  std::uint16_t ownPort = 0;
  std::uint16_t serverPort = 0;
  std::uint16_t length = 0;
  std::uint16_t offset = 0;
  std::uint16_t segment = 0;
};

static_assert(sizeof(CachedInfoParameters) == 12);
static_assert(sizeof(UdpOpenParameters) == 6);
static_assert(sizeof(UdpReadParameters) == 20);
static_assert(sizeof(UdpWriteParameters) == 20);

extern "C" {
// Where the ROM's structures are said to be, and its entry once it was found.
extern FarAddress oldStructureAt;
extern FarAddress newStructureAt;
extern FarAddress romEntry;

// Returns 0 when all is well; the status is in the parameters.
std::uint32_t romCall(RomFunction function, void* parameters);
}

// Finds the ROM's entry; fails when there is none.
void findRom();

// The ROM lets go of the card, so that nothing writes into memory any more. What a ROM cannot do of
// this it cannot; there is no other way. Does nothing before the ROM was found.
void leaveRom();

// The addresses that the ROM's server gave, in the byte order of the network.
struct NetworkAddresses {
  std::uint32_t own = 0;
  std::uint32_t server = 0;
  std::uint32_t gateway = 0;  // 0: the server is reached directly
};
extern NetworkAddresses networkAddresses;
// Asks the ROM for them, before the first file is opened; fails when it does not know its server.
void readAddresses();

}  // namespace omniset::loader
