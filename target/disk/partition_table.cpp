#include "target/disk/partition_table.h"

#include <algorithm>

#include "core/byte_cursor.h"
#include "core/error.h"
#include "target/disk/size_text.h"

namespace omniset {

namespace {

constexpr std::uint64_t kLongest = 2 * 1024 * 2048;
constexpr std::uint64_t kAlignedFrom = 16 * 2048;  // the smallest disk with an aligned partition
constexpr std::uint32_t kAlignedFirst = 2048;
constexpr std::uint32_t kTrackFirst = 63;

constexpr std::uint8_t kTypeFat16Small = 0x04;  // under 32 MB
constexpr std::uint8_t kTypeFat16 = 0x06;
constexpr std::uint32_t kSmallFat16Limit = 65536;

constexpr std::size_t kSignatureAt = 440;
constexpr std::size_t kTableAt = 446;
constexpr std::size_t kEntries = 4;
constexpr std::size_t kEntryLength = 16;
constexpr std::size_t kTypeAt = 4;  // in an entry
constexpr std::size_t kEndMarkAt = 510;
constexpr std::uint16_t kEndMark = 0xAA55;
constexpr std::uint8_t kActive = 0x80;

constexpr std::uint32_t kHeads = 255;
constexpr std::uint32_t kTrackSectors = 63;
constexpr std::uint32_t kMostCylinder = 1023;

// Cylinder, head and sector in the three bytes of an entry; the last ones that these can tell for a
// sector beyond them.
void putPosition(ByteWriter& out, std::uint32_t sector) {
  std::uint32_t cylinder = sector / (kHeads * kTrackSectors);
  std::uint32_t head = sector / kTrackSectors % kHeads;
  std::uint32_t number = sector % kTrackSectors + 1;
  if (cylinder > kMostCylinder) {
    cylinder = kMostCylinder;
    head = kHeads - 1;
    number = kTrackSectors;
  }
  out.u8(static_cast<std::uint8_t>(head));
  out.u8(static_cast<std::uint8_t>(number | (cylinder >> 2 & 0xC0)));
  out.u8(static_cast<std::uint8_t>(cylinder));
}

bool holdsTable(std::span<const std::uint8_t, kSectorSize> sector) {
  return ByteReader(sector.subspan(kEndMarkAt)).u16le() == kEndMark;
}

bool isExtended(std::uint8_t type) {
  return type == 0x05 || type == 0x0F || type == 0x85;
}

}  // namespace

Partition planPartition(const std::string& diskName, std::uint64_t diskSectors) {
  if (diskSectors < kSmallestDisk) {
    throw Failure("The disk " + diskName + " is too small: it has " + sizeText(diskSectors) +
                  ", and at least " + sizeText(kSmallestDisk) + " are needed.");
  }
  Partition planned;
  planned.first = diskSectors < kAlignedFrom ? kTrackFirst : kAlignedFirst;
  planned.count = static_cast<std::uint32_t>(std::min(kLongest, diskSectors - planned.first));
  planned.type = planned.count < kSmallFat16Limit ? kTypeFat16Small : kTypeFat16;
  return planned;
}

Sector makeMbr(std::span<const std::uint8_t> bootCode, std::uint32_t diskSignature,
               const Partition& partition) {
  if (bootCode.size() > kMbrCodeLength) throw Failure("The boot code of the disk is too long.");
  Sector sector{};
  ByteWriter(sector).put(bootCode);
  ByteWriter(std::span(sector).subspan(kSignatureAt)).u32le(diskSignature);
  ByteWriter entry{std::span(sector).subspan(kTableAt, kEntryLength)};
  entry.u8(kActive);
  putPosition(entry, partition.first);
  entry.u8(partition.type);
  putPosition(entry, partition.first + partition.count - 1);
  entry.u32le(partition.first);
  entry.u32le(partition.count);
  ByteWriter(std::span(sector).subspan(kEndMarkAt)).u16le(kEndMark);
  return sector;
}

std::optional<Partition> firstPartition(std::span<const std::uint8_t, kSectorSize> sector,
                                        std::uint64_t diskSectors) {
  if (!holdsTable(sector)) return {};
  ByteReader entry(sector.subspan(kTableAt, kEntryLength));
  const std::uint8_t status = entry.u8();
  if (status != 0 && status != kActive) return {};
  entry.take(3);
  Partition found;
  found.type = entry.u8();
  entry.take(3);
  found.first = entry.u32le();
  found.count = entry.u32le();
  if (found.type == 0 || isExtended(found.type) || found.first == 0 || found.count == 0) return {};
  if (std::uint64_t{found.first} + found.count > diskSectors) return {};
  return found;
}

bool holdsOtherEntries(std::span<const std::uint8_t, kSectorSize> sector,
                       std::uint64_t diskSectors) {
  if (!holdsTable(sector)) return false;
  for (std::size_t entry = firstPartition(sector, diskSectors) ? 1 : 0; entry < kEntries; ++entry) {
    if (sector[kTableAt + entry * kEntryLength + kTypeAt] != 0) return true;
  }
  return false;
}

bool isFatType(std::uint8_t type) {
  constexpr std::array<std::uint8_t, 6> kTypes{0x01, 0x04, 0x06, 0x0B, 0x0C, 0x0E};
  return std::find(kTypes.begin(), kTypes.end(), type) != kTypes.end();
}

}  // namespace omniset
