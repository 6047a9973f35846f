#include "payload/loader/common/physical_memory.h"

#include "payload/loader/bios/bios.h"
#include "payload/loader/common/console.h"
#include "payload/loader/common/low_memory.h"

namespace omniset::loader {
namespace {

// A segment of 64 KB as the processor's tables describe it.
struct Segment {
  std::uint16_t limit = 0;
  std::uint16_t start = 0;
  std::uint8_t startMiddle = 0;
  std::uint8_t access = 0;
  std::uint8_t flags = 0;
  std::uint8_t startHigh = 0;
};

// What INT 15h, 87h takes: the others are filled by the BIOS.
struct CopyTable {
  Segment unused[2];
  Segment from;
  Segment to;
  Segment biosCode;
  Segment biosStack;
};

constexpr std::uint32_t kPiece = 0x8000;
constexpr std::uint32_t kCopyFailed = 0x100;
constexpr std::uint32_t kSixteenMega = 0x1000000;

constexpr Segment segmentAt(std::uint32_t address) {
  constexpr std::uint8_t kWritableData = 0x93;
  return {0xFFFF,
          static_cast<std::uint16_t>(address),
          static_cast<std::uint8_t>(address >> 16),
          kWritableData,
          0,
          static_cast<std::uint8_t>(address >> 24)};
}

// Returns 0, or kCopyFailed and the BIOS's code.
std::uint32_t copyPiece(std::uint32_t to, std::uint32_t from, std::uint32_t count) {
  CopyTable table;
  table.from = segmentAt(from);
  table.to = segmentAt(to);
  BiosRegisters registers;
  registers.ax = 0x8700;
  registers.cx = (count + 1) / 2;
  registers.si = offsetOf(&table);
  if ((biosCall(0x15, &registers) & kCarryFlag) == 0) return 0;
  return kCopyFailed | (registers.ax >> 8 & 0xFF);
}

void addUsable(MemoryMap& map, std::uint32_t start, std::uint32_t size) {
  map.add({.start = start, .size = size, .type = kUsableMemory});
}

// Each call yields an entry, and the number of the next one. A BIOS may never come to the last.
// Leaves the map empty when this tells nothing of use.
bool surveyEntries(MemoryMap& map) {
  constexpr std::uint32_t kSignature = 0x534D4150;  // "SMAP"
  BiosRegisters registers;
  // One place is left for surveyMemory().
  for (std::size_t i = 0; i < MemoryMap::kMost - 1; ++i) {
    struct {
      MemoryEntry entry;
      std::uint32_t spare;  // some BIOSes write it, asked or not
    } answer;
    registers.ax = 0xE820;
    registers.cx = sizeof answer.entry;
    registers.dx = kSignature;
    registers.di = offsetOf(&answer);
    // Some BIOSes tell the end by the carry flag.
    if ((biosCall(0x15, &registers) & kCarryFlag) != 0) break;
    // One that changes its mind is not believed what it said before.
    if (registers.ax != kSignature) {
      map.clear();
      break;
    }
    map.add(answer.entry);
    if (registers.bx == 0) break;
  }
  if (map.usableEnd(0x100000) > 0x100000) return true;
  map.clear();
  return false;
}

// Two pieces: up to 16 MB in kilobytes, above it in units of 64 KB.
bool surveyTwoPieces(MemoryMap& map) {
  BiosRegisters registers;
  registers.ax = 0xE801;
  if ((biosCall(0x15, &registers) & kCarryFlag) != 0) return false;
  std::uint32_t low = registers.ax & 0xFFFF;
  std::uint32_t high = registers.bx & 0xFFFF;
  if (low == 0 && high == 0) {
    low = registers.cx & 0xFFFF;
    high = registers.dx & 0xFFFF;
  }
  // Between 1 and 16 MB there is not more.
  if (low == 0 || low > 15 * 1024) return false;
  addUsable(map, 0x100000, low * 1024);
  addUsable(map, kSixteenMega, high * 0x10000);
  return true;
}

void surveyOnePiece(MemoryMap& map) {
  BiosRegisters registers;
  registers.ax = 0x8800;
  if ((biosCall(0x15, &registers) & kCarryFlag) != 0) return;
  addUsable(map, 0x100000, (registers.ax & 0xFFFF) * 1024);
}

// Older BIOSes copy with addresses of 24 bits, and say that all went well: what should come above
// 16 MB is then written below. So a number is written there, and one to the same address modulo
// 16 MB, where nothing is yet; both have to stay. What was there before comes back.
bool isCopyingAbove16Mega(const MemoryMap& map) {
  constexpr std::uint32_t kLow = kTransferAt;
  constexpr std::uint32_t kHigh = kSixteenMega + kLow;
  if (map.usableEnd(kHigh) < kHigh + sizeof(std::uint32_t)) return false;
  constexpr std::uint32_t kHighMark = 0x48694869;
  constexpr std::uint32_t kLowMark = 0x4C6F4C6F;
  std::uint32_t before = 0;
  std::uint32_t high = kHighMark;
  std::uint32_t low = kLowMark;
  const std::uint32_t copies[][2] = {{offsetOf(&before), kHigh}, {kLow, offsetOf(&low)},
                                     {kHigh, offsetOf(&high)},   {offsetOf(&low), kLow},
                                     {offsetOf(&high), kHigh},   {kHigh, offsetOf(&before)}};
  for (const auto& [to, from] : copies) {
    if (copyPiece(to, from, sizeof(std::uint32_t)) != 0) return false;
  }
  return low == kLowMark && high == kHighMark;
}

}  // namespace

void surveyMemory(MemoryMap& map) {
  BiosRegisters registers;
  biosCall(0x12, &registers);
  if ((registers.ax & 0xFFFF) * 1024 < kLowMemoryEnd) {
    fail("Too little memory is free below 640 KB.");
  }
  if (!surveyEntries(map) && !surveyTwoPieces(map)) surveyOnePiece(map);
  if (!isCopyingAbove16Mega(map)) {
    map.add({.start = kSixteenMega, .sizeHigh = 1, .type = kReservedMemory});
  }
}

void copyMemory(std::uint32_t to, std::uint32_t from, std::uint32_t count) {
  while (count > 0) {
    const std::uint32_t piece = count < kPiece ? count : kPiece;
    const std::uint32_t fault = copyPiece(to, from, piece);
    if (fault != 0) failWithCode("", "The BIOS cannot copy memory", fault & 0xFF);
    to += piece;
    from += piece;
    count -= piece;
  }
}

void readMemory(void* object, std::uint32_t from, std::uint32_t count) {
  copyMemory(offsetOf(object), from, count);
}

void writeMemory(std::uint32_t to, const void* object, std::uint32_t count) {
  copyMemory(to, offsetOf(object), count);
}

}  // namespace omniset::loader
