// Makes a disk ready for the files of an installation: a new partition with an empty volume, or,
// when the configuration is to be kept, the volume that is there without the packages of the
// installation before.
#pragma once

#include <memory>
#include <string>

#include "target/disk/disk_choice.h"
#include "target/disk/disk_contents.h"
#include "target/disk/disk_format.h"
#include "target/disk/target_disk.h"

namespace omniset {

struct PreparedVolume {
  std::unique_ptr<Volume> volume;
  bool isKept = false;
};

class DiskPreparation {
 public:
  // All that is handed in outlives the preparation.
  DiskPreparation(TargetDisk& disk, const Say& say, const BootCode& bootCode,
                  const DrawNumber& drawNumber)
      : disk_(disk), say_(say), bootCode_(bootCode), drawNumber_(drawNumber) {}

  // Says what is on the disk and what is done to it. The volume is mounted for writing, and no
  // installation counts on it. Raises Failure with a sentence; asked to keep the configuration, it
  // rather fails than erases what cannot be read or is no FAT volume in the first partition.
  PreparedVolume run(bool keepConfiguration);

 private:
  struct Kept {
    std::unique_ptr<Volume> volume;
    DiskContents contents;
  };

  Kept openKept();
  DiskContents look();
  void sayWhatIsThere(const DiskContents& contents);
  std::unique_ptr<Volume> keepVolume();
  std::unique_ptr<Volume> makeVolume();
  void tell(const std::string& sentence);

  TargetDisk& disk_;
  const Say& say_;
  const BootCode& bootCode_;
  const DrawNumber& drawNumber_;
  DiskLayout layout_;
};

}  // namespace omniset
