// What is on all disks of the PC, for the announcements: found out in short steps beside them.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "target/disk/disk_inspection.h"
#include "target/disk/target_disk.h"

namespace omniset {

// While it is not done it may hold a volume of a disk: it is to be dropped before anything else
// uses the disks.
class DiskSurvey {
 public:
  // The disks that are there now. Raises what they raise.
  explicit DiskSurvey(TargetDisks& disks);

  // Short. True when all disks have been looked at.
  bool step();

  // What is known so far, such as "sda 64 MB, installed; vda 512 MB".
  std::string text() const;

 private:
  std::vector<std::unique_ptr<TargetDisk>> disks_;
  std::vector<std::unique_ptr<DiskInspection>> inspections_;
  std::size_t current_ = 0;
};

}  // namespace omniset
