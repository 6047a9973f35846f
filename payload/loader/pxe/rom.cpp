#include "payload/loader/pxe/rom.h"

#include "payload/loader/common/console.h"
#include "payload/loader/common/low_memory.h"
#include "payload/loader/common/numbers.h"
#include "payload/loader/common/physical_memory.h"

namespace omniset::loader {

NetworkAddresses networkAddresses;

namespace {

// Offsets in a reply of the server.
constexpr std::size_t kOwnAddress = 16;
constexpr std::size_t kServerAddress = 20;
constexpr std::size_t kRelayAddress = 24;

// One of the ROM's structures, with the offsets of its length and of the entry for calls. The sum
// of all its bytes is 0.
struct Structure {
  const char* signature;
  std::size_t length;
  std::size_t entry;
};
constexpr Structure kNewStructure{"!PXE", 4, 16};
constexpr Structure kOldStructure{"PXENV+", 8, 10};

// Of the old structure. Older ROMs have another function that ends their work.
constexpr std::size_t kVersion = 6;
constexpr std::uint16_t kVersionWithStop = 0x0201;

RomFunction lastFunction = RomFunction::kStopCard;

using Bytes = std::array<std::uint8_t, 256>;

std::uint32_t u32(const Bytes& bytes, std::size_t at) {
  return numberAt<std::uint32_t>(&bytes[at]);
}

// Takes the entry when this is such a structure, whose bytes are then in `bytes`.
bool takeEntry(FarAddress address, const Structure& structure, Bytes& bytes) {
  readMemory(bytes.data(), physicalAddress(address), sizeof bytes);
  for (std::size_t i = 0; structure.signature[i] != 0; ++i) {
    if (bytes[i] != static_cast<std::uint8_t>(structure.signature[i])) return false;
  }
  const std::size_t length = bytes[structure.length];
  std::uint8_t sum = 0;
  for (std::size_t i = 0; i < length; ++i) sum = static_cast<std::uint8_t>(sum + bytes[i]);
  if (sum != 0 || length < structure.entry + 4) return false;
  romEntry = u32(bytes, structure.entry);
  return romEntry != 0;
}

bool readCached(PacketType type) {
  CachedInfoParameters parameters;
  parameters.type = type;
  parameters.size = 2048;
  parameters.segment = kTransferAt / 16;
  parameters.limit = 2048;
  if (romCall(RomFunction::kGetCachedInfo, &parameters) != 0 || parameters.status != 0)
    return false;
  Bytes packet;
  readMemory(packet.data(),
             physicalAddress(static_cast<FarAddress>(parameters.segment) << 16 | parameters.offset),
             packet.size());
  networkAddresses = {u32(packet, kOwnAddress), u32(packet, kServerAddress),
                      u32(packet, kRelayAddress)};
  return networkAddresses.server != 0;
}

}  // namespace

void findRom() {
  Bytes bytes;
  lastFunction = RomFunction::kStopCard;
  if (takeEntry(newStructureAt, kNewStructure, bytes)) return;
  if (!takeEntry(oldStructureAt, kOldStructure, bytes)) {
    fail("This program was not started by a network boot ROM (PXE).");
  }
  if (numberAt<std::uint16_t>(&bytes[kVersion]) < kVersionWithStop) {
    lastFunction = RomFunction::kCleanUpCard;
  }
}

void leaveRom() {
  if (romEntry == 0) return;
  for (const RomFunction function :
       {RomFunction::kShutDownCard, RomFunction::kUnloadStack, lastFunction}) {
    RomParameters parameters;
    romCall(function, &parameters);
  }
}

void readAddresses() {
  if (!readCached(PacketType::kReply) && !readCached(PacketType::kAcknowledgement)) {
    fail("The boot ROM does not tell the address of its server.");
  }
}

}  // namespace omniset::loader
