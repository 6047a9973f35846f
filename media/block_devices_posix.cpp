#include "media/block_devices_posix.h"

#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <fstream>
#include <sstream>

namespace omniset {

namespace {

namespace fs = std::filesystem;

std::string firstLine(const fs::path& file) {
  std::ifstream stream(file);
  std::string line;
  std::getline(stream, line);
  return line;
}

std::vector<fs::path> entries(const fs::path& folder) {
  std::error_code ignored;
  std::vector<fs::path> found;
  for (const auto& entry : fs::directory_iterator(folder, ignored)) found.push_back(entry.path());
  std::sort(found.begin(), found.end());
  return found;
}

// "8:1", as the kernel writes the numbers of devices; empty for a path that is no block device.
std::string numberOf(const std::string& path) {
  struct stat facts {};
  if (stat(path.c_str(), &facts) != 0 || !S_ISBLK(facts.st_mode)) return {};
  return std::to_string(major(facts.st_rdev)) + ":" + std::to_string(minor(facts.st_rdev));
}

struct Mount {
  std::string number;
  std::string place;
  std::string source;
};

// Of a line of /proc/self/mountinfo: "36 35 8:1 / /mnt rw - ext4 /dev/sda1 rw", with optional
// fields before the hyphen.
Mount parseMount(const std::string& line) {
  std::istringstream fields(line);
  Mount mount;
  std::string skipped;
  fields >> skipped >> skipped >> mount.number >> skipped >> mount.place;
  while (fields >> skipped && skipped != "-") {
  }
  fields >> skipped >> mount.source;
  return mount;
}

std::vector<Mount> readMounts(const fs::path& proc) {
  std::vector<Mount> found;
  std::ifstream stream(proc / "self/mountinfo");
  for (std::string line; std::getline(stream, line);) found.push_back(parseMount(line));
  return found;
}

}  // namespace

std::string BlockDevices::nameOf(const std::string& path) const {
  const std::string number = numberOf(path);
  std::error_code ignored;
  return number.empty() ? "" : fs::read_symlink(sys_ / "dev/block" / number, ignored).filename();
}

std::vector<std::string> BlockDevices::disks() const {
  std::vector<std::string> names;
  for (const fs::path& device : entries(sys_ / "block")) {
    const std::string name = device.filename();
    const bool isOther = name.starts_with("sr") || name.starts_with("fd");
    if (fs::exists(device / "device") && !isOther) names.push_back(name);
  }
  return names;
}

bool BlockDevices::isRemovable(const std::string& name) const {
  return firstLine(folder(name) / "removable") == "1";
}

bool BlockDevices::isSystemDisk(const std::string& name) const {
  return mountedOn(numbersOn(name)) == "/";
}

std::string BlockDevices::obstacle(const std::string& name) const {
  if (name.empty()) return {};
  if (fs::exists(folder(name) / "partition")) return "it is a partition; name the whole disk";
  const Numbers numbers = numbersOn(name);
  if (const auto place = mountedOn(numbers)) {
    return *place == "/" ? "the system runs from it" : "it is mounted on " + *place;
  }
  if (isSwap(numbers)) return "the system swaps to it";
  if (const std::string holder = holderOf(name); !holder.empty()) {
    return "it is in use by " + holder;
  }
  if (firstLine(folder(name) / "ro") == "1") return "it is write-protected";
  const std::string sectorSize = firstLine(folder(name) / "queue/logical_block_size");
  if (!sectorSize.empty() && sectorSize != "512") {
    return "its sectors have " + sectorSize + " bytes; only from those of 512 a PC starts";
  }
  return {};
}

std::string BlockDevices::loopDeviceOf(const std::string& image) const {
  for (const fs::path& device : entries(sys_ / "block")) {
    std::error_code ignored;
    if (fs::equivalent(firstLine(device / "loop/backing_file"), image, ignored)) {
      return device.filename();
    }
  }
  return {};
}

// The disk itself, its partitions, and what lies upon these (LVM, RAID, encryption).
BlockDevices::Numbers BlockDevices::numbersOn(const std::string& name) const {
  Numbers numbers;
  if (!name.empty()) addNumbers(name, numbers);
  return numbers;
}

void BlockDevices::addNumbers(const std::string& name, Numbers& numbers) const {
  if (!numbers.insert(firstLine(folder(name) / "dev")).second) return;
  for (const std::string& partition : partitionsOf(name)) addNumbers(partition, numbers);
  for (const fs::path& holder : entries(folder(name) / "holders")) {
    addNumbers(holder.filename(), numbers);
  }
}

std::vector<std::string> BlockDevices::partitionsOf(const std::string& name) const {
  std::vector<std::string> names;
  for (const fs::path& entry : entries(folder(name))) {
    if (fs::exists(entry / "partition")) names.push_back(entry.filename());
  }
  return names;
}

// Such as a volume group or an array that has something of it.
std::string BlockDevices::holderOf(const std::string& name) const {
  for (const fs::path& holder : entries(folder(name) / "holders")) return holder.filename();
  for (const std::string& partition : partitionsOf(name)) {
    if (std::string holder = holderOf(partition); !holder.empty()) return holder;
  }
  return {};
}

// Some file systems have numbers of their own: then the source's path tells the device.
std::optional<std::string> BlockDevices::mountedOn(const Numbers& numbers) const {
  std::optional<std::string> place;
  for (const Mount& mount : readMounts(proc_)) {
    if (!numbers.contains(mount.number) && !numbers.contains(numberOf(mount.source))) continue;
    if (!place || mount.place == "/") place = mount.place;
  }
  return place;
}

bool BlockDevices::isSwap(const Numbers& numbers) const {
  std::ifstream stream(proc_ / "swaps");
  for (std::string line; std::getline(stream, line);) {
    if (numbers.contains(numberOf(line.substr(0, line.find_first_of(" \t"))))) return true;
  }
  return false;
}

}  // namespace omniset
