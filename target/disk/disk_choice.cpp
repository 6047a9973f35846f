#include "target/disk/disk_choice.h"

#include <utility>

#include "core/error.h"
#include "target/disk/disk_contents.h"
#include "target/disk/partition_table.h"
#include "target/disk/volume_files.h"

namespace omniset {

namespace {

// A volume that cannot be looked at might be the medium: better not to install than to erase that.
bool holdsInstaller(TargetDisk& disk, TargetDisk::Place place) try {
  const auto volume = disk.mount(place, TargetDisk::Access::kReadOnly);
  const auto entries = volume->list();
  volume->unmount();
  return findFile(entries, kKernelName) && findFile(entries, kRamDiskName);
} catch (const Failure& e) {
  throw Failure(std::string(e.what()) + " It cannot be told whether this PC was started from it. " +
                "Start this PC over the network to install on it.");
}

bool mayBeBootMedium(TargetDisk& disk) {
  const DiskLayout layout = readLayout(disk);
  return (layout.holdsFat && holdsInstaller(disk, TargetDisk::Place::kFirstPartition)) ||
         (layout.isFatDisk && holdsInstaller(disk, TargetDisk::Place::kWholeDisk));
}

// Why nothing can be installed on the disk; empty when it can.
std::string obstacle(TargetDisk& disk, bool bootedFromMedium) {
  const std::string leftAlone = "The disk " + disk.name() + " is left alone: ";
  if (const std::string reason = disk.obstacle(); !reason.empty()) return leftAlone + reason + ".";
  try {
    planPartition(disk.name(), disk.sectorCount());
  } catch (const Failure& tooSmall) {
    return tooSmall.what();
  }
  if (!bootedFromMedium || !mayBeBootMedium(disk)) return {};
  return leftAlone + "it holds the installer system, and this PC may have been started from it.";
}

}  // namespace

std::unique_ptr<TargetDisk> chooseDisk(TargetDisks& disks, bool bootedFromMedium, const Say& say) {
  std::string reasons;
  for (std::unique_ptr<TargetDisk>& disk : disks.find()) {
    const std::string reason = obstacle(*disk, bootedFromMedium);
    if (reason.empty()) {
      if (!reasons.empty()) say(reasons);
      return std::move(disk);
    }
    reasons += (reasons.empty() ? "" : " ") + reason;
  }
  if (reasons.empty()) reasons = "No disk was found.";
  throw Failure(reasons + " Connect a disk, and start this PC again.");
}

}  // namespace omniset
