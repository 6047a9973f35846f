#include "target/disk/disk_format.h"

#include "target/disk/fat16_format.h"

namespace omniset {

// The place is marked before the table leads there: an old volume may be in it.
void formatDisk(TargetDisk& disk, const Partition& partition, const BootCode& bootCode,
                const DrawNumber& drawNumber) {
  beginFormat(disk, partition);
  disk.writeSectors(0, makeMbr(bootCode.disk, drawNumber(), partition));
  disk.flush();
  disk.rereadPartitions();
  formatFat16(disk, partition, bootCode.volume, drawNumber());
}

}  // namespace omniset
