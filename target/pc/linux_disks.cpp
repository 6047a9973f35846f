#include "target/pc/linux_disks.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <utility>

#include "core/error.h"
#include "target/machine_facts.h"
#include "target/pc/linux_volume.h"
#include "target/pc/system_files.h"

namespace omniset {

LinuxDisk::LinuxDisk(std::string name)
    : name_(std::move(name)), device_(open(("/dev/" + name_).c_str(), O_RDWR | O_CLOEXEC)) {
  if (!device_.isOpen()) failWithReason("The disk " + name_ + " cannot be opened");
  std::uint64_t bytes = 0;
  if (ioctl(device_.get(), BLKGETSIZE64, &bytes) < 0) {
    failWithReason("The size of the disk " + name_ + " is unknown");
  }
  sectorCount_ = bytes / kSectorSize;
}

std::string LinuxDisk::obstacle() const {
  int isReadOnly = 0;
  if (ioctl(device_.get(), BLKROGET, &isReadOnly) == 0 && isReadOnly)
    return "it is write-protected";
  int sectorSize = 0;
  if (ioctl(device_.get(), BLKSSZGET, &sectorSize) == 0 && sectorSize == int{kSectorSize})
    return {};
  return "its sectors have " + std::to_string(sectorSize) + " bytes";
}

void LinuxDisk::readSectors(std::uint64_t first, std::span<std::uint8_t> into) {
  const ssize_t length =
      pread(device_.get(), into.data(), into.size(), static_cast<off_t>(first * kSectorSize));
  if (length < 0) failWithReason("The disk " + name_ + " cannot be read");
  if (static_cast<std::size_t>(length) != into.size()) {
    throw Failure("The disk " + name_ + " ends early.");
  }
}

void LinuxDisk::writeSectors(std::uint64_t first, std::span<const std::uint8_t> from) {
  const ssize_t length =
      pwrite(device_.get(), from.data(), from.size(), static_cast<off_t>(first * kSectorSize));
  if (length < 0) failWithReason("The disk " + name_ + " cannot be written");
  if (static_cast<std::size_t>(length) != from.size()) {
    throw Failure("The disk " + name_ + " ends early.");
  }
}

void LinuxDisk::flush() {
  if (fsync(device_.get()) < 0) failWithReason("The disk " + name_ + " cannot be written");
}

void LinuxDisk::rereadPartitions() {
  if (ioctl(device_.get(), BLKRRPART) < 0) {
    failWithReason("The new partition of the disk " + name_ + " does not show");
  }
}

std::unique_ptr<Volume> LinuxDisk::mount(Place place, Access access) {
  const std::string device = "/dev/" + name_ + (place == Place::kFirstPartition ? "1" : "");
  return std::make_unique<LinuxVolume>(name_, device, access);
}

std::vector<std::unique_ptr<TargetDisk>> LinuxDisks::find() {
  std::vector<std::unique_ptr<TargetDisk>> disks;
  for (const std::string& name : diskNames(readSystemFile("/proc/partitions"))) {
    try {
      disks.push_back(std::make_unique<LinuxDisk>(name));
    } catch (const Failure&) {
      continue;
    }
  }
  return disks;
}

}  // namespace omniset
