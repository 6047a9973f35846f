#include "target/disk/booted_volume.h"

#include <algorithm>
#include <array>
#include <utility>

#include "core/byte_cursor.h"
#include "core/error.h"
#include "target/disk/disk_contents.h"
#include "target/disk/partition_table.h"
#include "target/disk/volume_files.h"

namespace omniset {

namespace {

constexpr std::size_t kSerialNumberAt = 39;
constexpr std::array<const char*, 4> kFiles{kKernelName, kRamDiskName, "ldlinux.sys",
                                            "syslinux.cfg"};

using Wanted = std::optional<std::uint32_t>;

std::uint32_t readSerialNumber(TargetDisk& disk, std::uint64_t bootSector) {
  Sector sector{};
  disk.readSectors(bootSector, sector);
  return ByteReader(std::span(sector).subspan(kSerialNumberAt)).u32le();
}

bool holdsFiles(TargetDisk& disk, TargetDisk::Place place) {
  const auto volume = disk.mount(place, TargetDisk::Access::kReadOnly);
  const auto entries = volume->list();
  volume->unmount();
  return std::all_of(kFiles.begin(), kFiles.end(),
                     [&](const char* name) { return findFile(entries, name) != nullptr; });
}

// Sets the volume's place and number when it is there.
bool isBootedVolume(BootedVolume& volume, TargetDisk::Place place, std::uint64_t bootSector,
                    Wanted wanted) {
  volume.place = place;
  volume.serialNumber = readSerialNumber(*volume.disk, bootSector);
  return (!wanted || volume.serialNumber == *wanted) && holdsFiles(*volume.disk, place);
}

// One volume of a disk at most: with one on the disk as a whole no partition is started.
bool findOn(BootedVolume& volume, Wanted wanted) try {
  const DiskLayout layout = readLayout(*volume.disk);
  if (layout.isFatDisk && isBootedVolume(volume, TargetDisk::Place::kWholeDisk, 0, wanted)) {
    return true;
  }
  return layout.holdsFat && isBootedVolume(volume, TargetDisk::Place::kFirstPartition,
                                           layout.partition->first, wanted);
} catch (const Failure& e) {
  throw Failure(std::string(e.what()) +
                " It cannot be told which disk this PC was started from. Check the disk " +
                volume.disk->name() + " or remove it, and start this PC again.");
}

[[noreturn]] void failWithSeveral(const std::vector<BootedVolume>& found) {
  std::string names;
  for (const BootedVolume& volume : found) {
    names += (names.empty() ? "" : &volume == &found.back() ? " and " : ", ") + volume.disk->name();
  }
  throw Failure("This PC may have been started from any of the disks " + names +
                ": they hold the same. Remove all but one of them, and start this PC again.");
}

}  // namespace

BootedVolume findBootedVolume(TargetDisks& disks, Wanted serialNumber) {
  std::vector<BootedVolume> found;
  for (std::unique_ptr<TargetDisk>& disk : disks.find()) {
    BootedVolume volume{std::move(disk)};
    if (findOn(volume, serialNumber)) found.push_back(std::move(volume));
  }
  if (found.empty()) {
    throw Failure(
        "The disk that this PC was started from is not among its IDE, SATA and virtio disks. "
        "Connect it as one of these, or install this PC over the network.");
  }
  if (found.size() > 1) failWithSeveral(found);
  return std::move(found.front());
}

std::vector<std::unique_ptr<TargetDisk>> OneDisk::find() {
  auto disks = disks_.find();
  std::erase_if(disks, [&](const auto& disk) { return disk->name() != name_; });
  return disks;
}

}  // namespace omniset
