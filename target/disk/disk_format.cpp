#include "target/disk/disk_format.h"

#include "target/disk/fat16_format.h"

namespace omniset {

namespace {

// Of a GUID partition table the headers are in the second and the last sector: left there, they
// would lead other tools to partitions that are gone.
void eraseGuidTables(TargetDisk& disk) {
  const Sector empty{};
  disk.writeSectors(1, empty);
  disk.writeSectors(disk.sectorCount() - 1, empty);
}

}  // namespace

// The place is marked before the table leads there: an old volume may be in it.
void formatDisk(TargetDisk& disk, const Partition& partition, const BootCode& bootCode,
                const DrawNumber& drawNumber) {
  beginFormat(disk, partition);
  eraseGuidTables(disk);
  disk.writeSectors(0, makeMbr(bootCode.disk, drawNumber(), partition));
  disk.flush();
  disk.rereadPartitions();
  formatFat16(disk, partition, bootCode.volume, drawNumber());
}

}  // namespace omniset
