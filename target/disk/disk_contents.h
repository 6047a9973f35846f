// What is on a disk, as far as an installation is concerned.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "target/disk/installation_mark.h"
#include "target/disk/partition_table.h"
#include "target/disk/target_disk.h"

namespace omniset {

// The partition of a disk, and its file system where it has one.
struct DiskLayout {
  std::optional<Partition> partition;
  bool isOurs = false;       // an installation began in the partition, or on the disk
  bool holdsFat = false;     // there may be a FAT volume in the partition
  bool isFatDisk = false;    // there may be one on the disk as a whole, without a partition
  bool holdsOthers = false;  // that, or anything but an installation and FAT in the first entry
};

// Reads two sectors at most. Raises what the disk raises.
DiskLayout readLayout(TargetDisk& disk);

// Not whole: it was complete, and one of its files is no more what it was; the script often, once
// the router has run it.
enum class Installation { kNone, kBrokenOff, kNotWhole, kComplete };

// What the root folder of the volume in the partition tells. Complete means that all files of the
// mark are there with their sizes; their contents are not read.
struct DiskContents {
  Installation installation = Installation::kNone;
  MarkedFiles files;  // of the mark
};

// Raises what the volume raises.
DiskContents readContents(const DiskLayout& layout, Volume& volume);

}  // namespace omniset
