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

constexpr Segment segmentAt(std::uint32_t address) {
  constexpr std::uint8_t kWritableData = 0x93;
  return {0xFFFF,
          static_cast<std::uint16_t>(address),
          static_cast<std::uint8_t>(address >> 16),
          kWritableData,
          0,
          static_cast<std::uint8_t>(address >> 24)};
}

void copyPiece(std::uint32_t to, std::uint32_t from, std::uint32_t count) {
  CopyTable table;
  table.from = segmentAt(from);
  table.to = segmentAt(to);
  BiosRegisters registers;
  registers.ax = 0x8700;
  registers.cx = (count + 1) / 2;
  registers.si = offsetOf(&table);
  if ((biosCall(0x15, &registers) & kCarryFlag) != 0) {
    failWithCode("", "The BIOS cannot copy memory", registers.ax >> 8 & 0xFF);
  }
}

void addUsable(MemoryMap& map, std::uint32_t start, std::uint32_t size) {
  map.add({.start = start, .size = size, .type = kUsableMemory});
}

// Each call yields an entry, and the number of the next one. A BIOS may never come to the last.
bool surveyEntries(MemoryMap& map) {
  BiosRegisters registers;
  for (std::size_t i = 0; i < MemoryMap::kMost; ++i) {
    MemoryEntry entry;
    registers.ax = 0xE820;
    registers.cx = sizeof entry;
    registers.dx = 0x534D4150;  // "SMAP"
    registers.di = offsetOf(&entry);
    const std::uint32_t flags = biosCall(0x15, &registers);
    // Some BIOSes tell the end by the carry flag.
    if ((flags & kCarryFlag) != 0 || registers.ax != 0x534D4150) break;
    map.add(entry);
    if (registers.bx == 0) break;
  }
  return map.usableEnd(0x100000) > 0x100000;
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
  addUsable(map, 0x100000, low * 1024);
  addUsable(map, 0x1000000, high * 0x10000);
  return low != 0;
}

void surveyOnePiece(MemoryMap& map) {
  BiosRegisters registers;
  registers.ax = 0x8800;
  if ((biosCall(0x15, &registers) & kCarryFlag) != 0) return;
  addUsable(map, 0x100000, (registers.ax & 0xFFFF) * 1024);
}

}  // namespace

void surveyMemory(MemoryMap& map) {
  BiosRegisters registers;
  biosCall(0x12, &registers);
  if ((registers.ax & 0xFFFF) * 1024 < kLowMemoryEnd) {
    fail("Too little memory is free below 640 KB.");
  }
  if (!surveyEntries(map) && !surveyTwoPieces(map)) surveyOnePiece(map);
}

void copyMemory(std::uint32_t to, std::uint32_t from, std::uint32_t count) {
  while (count > 0) {
    const std::uint32_t piece = count < kPiece ? count : kPiece;
    copyPiece(to, from, piece);
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
