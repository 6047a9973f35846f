#include "target/disk/disk_format.h"

#include "core/byte_cursor.h"
#include "core/error.h"
#include "target/disk/disk_contents.h"
#include "target/disk/fat16_format.h"

namespace omniset {

namespace {

// The header of a GUID partition table (UEFI specification, 5.3.2).
bool holdsGuidTable(TargetDisk& disk, std::uint64_t place) {
  Sector sector{};
  try {
    disk.readSectors(place, sector);
  } catch (const Failure&) {
    return false;  // nothing that leads anybody
  }
  return asText(sector).starts_with("EFI PART");
}

// Left in the second and the last sector, it would lead other tools to partitions that are gone.
void eraseGuidTables(TargetDisk& disk) {
  for (const std::uint64_t place : {std::uint64_t{1}, disk.sectorCount() - 1}) {
    if (holdsGuidTable(disk, place)) disk.writeSectors(place, Sector{});
  }
}

// The volume that is there may reach over the place of the new one: it goes before that is written
// to. Half overwritten it would still be there, and a PC might start from it.
void eraseOldVolume(TargetDisk& disk) {
  const DiskLayout layout = readLayout(disk);
  if (layout.isFatDisk) beginFormat(disk, Partition{});
  if (layout.holdsFat) beginFormat(disk, *layout.partition);
}

}  // namespace

// The place is marked before the table leads there: an old volume may be in it.
void formatDisk(TargetDisk& disk, const Partition& partition, const BootCode& bootCode,
                const DrawNumber& drawNumber) {
  eraseOldVolume(disk);
  beginFormat(disk, partition);
  eraseGuidTables(disk);
  disk.writeSectors(0, makeMbr(bootCode.disk, drawNumber(), partition));
  disk.flush();
  disk.rereadPartitions();
  formatFat16(disk, partition, bootCode.volume, drawNumber());
}

}  // namespace omniset
