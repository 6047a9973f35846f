#include "target/disk/disk_preparation.h"

#include <algorithm>

#include "core/error.h"
#include "core/file_name.h"
#include "link/link_frame.h"
#include "target/disk/mark_file.h"
#include "target/disk/partition_table.h"
#include "target/disk/size_text.h"

namespace omniset {

namespace {

constexpr const char* kWayOut =
    " Install without keeping the configuration to erase everything on the disk.";

bool isOfInstallation(const VolumeEntry& entry, const MarkedFiles& files) {
  if (entry.isFolder || isSameFileName(entry.name, kScriptName)) return false;
  if (isPackageFileName(entry.name) || isSameFileName(entry.name, kPartName)) return true;
  return std::any_of(files.begin(), files.end(),
                     [&](const MarkedFile& file) { return isSameFileName(file.name, entry.name); });
}

}  // namespace

PreparedVolume DiskPreparation::run(bool keepConfiguration) {
  layout_ = readLayout(disk_);
  if (keepConfiguration) {
    if (layout_.holdsFat && isFatType(layout_.partition->type)) return {keepVolume(), true};
    if (layout_.holdsOthers) {
      throw Failure("What is on the disk " + disk_.name() + " cannot be kept." + kWayOut);
    }
    tell("there is nothing on it to keep.");
  }
  return {makeVolume(), false};
}

void DiskPreparation::tell(const std::string& sentence) {
  say_("Disk " + disk_.name() + ", " + sizeText(disk_.sectorCount()) + ": " + sentence);
}

void DiskPreparation::sayWhatIsThere(const DiskContents& contents) {
  switch (contents.installation) {
    case Installation::kNone:
      return tell("no installation is on it.");
    case Installation::kBrokenOff:
      return tell("the installation on it broke off; it is installed anew.");
    case Installation::kNotWhole:
      return tell("the installation on it is not whole any more; it is installed anew.");
    case Installation::kComplete:
      return tell("an installation of " + std::to_string(contents.files.size()) +
                  " files is on it; it is installed anew.");
  }
}

// Only to say it: what cannot be read is erased all the same.
DiskContents DiskPreparation::look() {
  DiskContents contents;
  if (layout_.isOurs) contents.installation = Installation::kBrokenOff;
  if (!layout_.holdsFat) return contents;
  try {
    const auto volume =
        disk_.mount(TargetDisk::Place::kFirstPartition, TargetDisk::Access::kReadOnly);
    return readContents(layout_, *volume);
  } catch (const Failure&) {
    return contents;
  }
}

DiskPreparation::Kept DiskPreparation::openKept() {
  try {
    Kept kept{disk_.mount(TargetDisk::Place::kFirstPartition, TargetDisk::Access::kReadWrite), {}};
    kept.contents = readContents(layout_, *kept.volume);
    return kept;
  } catch (const Failure& e) {
    throw Failure(e.what() + std::string(kWayOut));
  }
}

std::unique_ptr<Volume> DiskPreparation::keepVolume() {
  auto [volume, contents] = openKept();
  sayWhatIsThere(contents);
  tell("the partition and the configuration on it are kept; the packages are replaced.");
  writeBegunMark(*volume);
  for (const VolumeEntry& entry : volume->list()) {
    if (isOfInstallation(entry, contents.files)) volume->remove(entry.name);
  }
  volume->sync();
  return std::move(volume);
}

std::unique_ptr<Volume> DiskPreparation::makeVolume() {
  sayWhatIsThere(look());
  const Partition partition = planPartition(disk_.name(), disk_.sectorCount());
  tell("everything on it is erased; one partition of " + sizeText(partition.count) + ", FAT16.");
  formatDisk(disk_, partition, bootCode_, drawNumber_);
  auto volume = disk_.mount(TargetDisk::Place::kFirstPartition, TargetDisk::Access::kReadWrite);
  writeBegunMark(*volume);
  return volume;
}

}  // namespace omniset
