// Finds the volume of a fixed disk that this PC was started from, by the loader on it.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "target/disk/target_disk.h"

namespace omniset {

struct BootedVolume {
  std::unique_ptr<TargetDisk> disk;
  TargetDisk::Place place = TargetDisk::Place::kWholeDisk;
  std::uint32_t serialNumber = 0;  // of the volume
};

// The FAT volume, of a whole disk or in its first partition, whose root folder holds the files that
// start the installer system from a disk, and that has this serial number (bytes 39 to 42 of its
// boot sector); without a number, the only volume with the files. Raises Failure with a sentence
// when there is none, when there are several, and when a disk cannot be looked at.
BootedVolume findBootedVolume(TargetDisks& disks, std::optional<std::uint32_t> serialNumber);

// Of all disks the one of that name, as if there were no other.
class OneDisk : public TargetDisks {
 public:
  // `disks` outlives this object.
  OneDisk(TargetDisks& disks, std::string name) : disks_(disks), name_(std::move(name)) {}
  std::vector<std::unique_ptr<TargetDisk>> find() override;

 private:
  TargetDisks& disks_;
  std::string name_;
};

}  // namespace omniset
