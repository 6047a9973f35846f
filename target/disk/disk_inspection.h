// Finds out what is on a disk, with a look at every byte of an installation, in steps that are
// short enough to be done beside other things.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "target/disk/disk_contents.h"
#include "target/disk/target_disk.h"
#include "target/disk/volume_files.h"

namespace omniset {

// Mounts the disk's volume for reading, from the first step until it is done or dropped; nothing
// else may use the disk meanwhile.
class DiskInspection {
 public:
  // The disk outlives the inspection.
  explicit DiskInspection(TargetDisk& disk) : disk_(disk) {}

  // Reads at most 256 KB of files. True when the inspection is done. Never raises: what cannot be
  // read does not count as installed.
  bool step();

  // What is known so far: complete only when the inspection is done.
  Installation installation() const { return found_; }
  // The files of a complete installation.
  const MarkedFiles& files() const { return files_; }
  // Such as "sda 64 MB, installed".
  std::string text() const;

 private:
  void openVolume();
  void readSlices();
  void end();

  TargetDisk& disk_;
  bool isDone_ = false;
  Installation found_ = Installation::kNone;
  MarkedFiles files_;
  std::size_t next_ = 0;
  std::unique_ptr<Volume> volume_;
  std::unique_ptr<FileCheck> check_;  // of the file `next_`
};

}  // namespace omniset
