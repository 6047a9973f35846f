#include "target/disk/fat16_format.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "core/byte_cursor.h"
#include "target/disk/fat_boot_sector.h"

namespace omniset {

namespace {

constexpr std::uint32_t kBlockSectors = 64;
constexpr std::uint8_t kLabelEntry = 0x08;
constexpr std::uint16_t kFirstDate = 1 << 5 | 1;  // 1 January 1980

using Block = std::vector<std::uint8_t>;

// An area that starts with the block and is zero for the rest. Leaves the block zero.
void writeArea(TargetDisk& disk, std::uint64_t first, std::uint32_t count, Block& block) {
  while (count > 0) {
    const std::uint32_t part = std::min(count, kBlockSectors);
    disk.writeSectors(first, std::span(block).first(part * kSectorSize));
    std::fill(block.begin(), block.end(), std::uint8_t{0});
    first += part;
    count -= part;
  }
}

void writeTables(TargetDisk& disk, std::uint64_t first, std::uint32_t length, Block& block) {
  for (std::uint32_t i = 0; i < kFat16Tables; ++i) {
    // The two entries that stand for no cluster: the kind of medium, and that all is in order.
    ByteWriter(block).u32le(0xFFFFFFF8);
    writeArea(disk, first + i * length, length, block);
  }
}

void writeRootFolder(TargetDisk& disk, std::uint64_t first, Block& block) {
  ByteWriter label(block);
  label.put(kFat16Label);
  label.u8(kLabelEntry);
  ByteWriter(std::span(block).subspan(24)).u16le(kFirstDate);
  writeArea(disk, first, kFat16RootSectors, block);
}

}  // namespace

void beginFormat(TargetDisk& disk, const Partition& partition) {
  disk.writeSectors(partition.first, makeBegunSector());
  disk.flush();
}

void formatFat16(TargetDisk& disk, const Partition& partition,
                 std::span<const std::uint8_t> bootCode, std::uint32_t serialNumber) {
  const Fat16Plan plan = planFat16(partition.count);
  const Sector bootSector = makeFat16BootSector(bootCode, plan, partition.first, serialNumber);
  const std::uint64_t tables = std::uint64_t{partition.first} + kFat16ReservedSectors;
  Block block(kBlockSectors * kSectorSize);
  writeTables(disk, tables, plan.tableSectors, block);
  writeRootFolder(disk, tables + kFat16Tables * plan.tableSectors, block);
  disk.flush();
  disk.writeSectors(partition.first, bootSector);
  disk.flush();
}

}  // namespace omniset
