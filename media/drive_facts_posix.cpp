#include "media/drive_facts_posix.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>
#include <set>
#include <sstream>

#include "media/child_process_posix.h"
#include "media/first_sector.h"

namespace omniset {

namespace {

namespace fs = std::filesystem;

const fs::path kBlockDevices = "/sys/class/block";

// "8:1", as the kernel names devices.
using DeviceNumber = std::string;

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

// The name in /sys of a device that a path stands for, through links.
std::string kernelName(const std::string& path) {
  struct stat facts {};
  if (stat(path.c_str(), &facts) != 0 || !S_ISBLK(facts.st_mode)) return {};
  std::error_code ignored;
  return fs::read_symlink("/sys/dev/block/" + std::to_string(major(facts.st_rdev)) + ":" +
                              std::to_string(minor(facts.st_rdev)),
                          ignored)
      .filename();
}

// The disk itself, its partitions, and what lies upon these (LVM, RAID, encryption).
void addNumbers(const fs::path& device, std::set<DeviceNumber>& numbers) {
  if (!numbers.insert(firstLine(device / "dev")).second) return;
  for (const fs::path& entry : entries(device)) {
    if (fs::exists(entry / "partition")) addNumbers(entry, numbers);
  }
  for (const fs::path& holder : entries(device / "holders")) addNumbers(holder, numbers);
}

std::set<DeviceNumber> numbersOn(const std::string& name) {
  std::set<DeviceNumber> numbers;
  addNumbers(kBlockDevices / name, numbers);
  return numbers;
}

struct Mount {
  DeviceNumber number;
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

std::vector<Mount> mounts() {
  std::vector<Mount> found;
  std::ifstream stream("/proc/self/mountinfo");
  for (std::string line; std::getline(stream, line);) found.push_back(parseMount(line));
  return found;
}

// Some file systems have numbers of their own: then the source's path tells the device.
DeviceNumber numberOfSource(const std::string& source) {
  struct stat facts {};
  if (stat(source.c_str(), &facts) != 0 || !S_ISBLK(facts.st_mode)) return {};
  return std::to_string(major(facts.st_rdev)) + ":" + std::to_string(minor(facts.st_rdev));
}

// Where something of the disk is mounted; "/" first.
std::optional<std::string> mountedOn(const std::string& name) {
  const std::set<DeviceNumber> numbers = numbersOn(name);
  std::optional<std::string> place;
  for (const Mount& mount : mounts()) {
    if (!numbers.contains(mount.number) && !numbers.contains(numberOfSource(mount.source))) {
      continue;
    }
    if (!place || mount.place == "/") place = mount.place;
  }
  return place;
}

bool isSwapOn(const std::string& name) {
  const std::set<DeviceNumber> numbers = numbersOn(name);
  std::ifstream stream("/proc/swaps");
  for (std::string line; std::getline(stream, line);) {
    if (numbers.contains(numberOfSource(line.substr(0, line.find_first_of(" \t"))))) return true;
  }
  return false;
}

std::string loopDeviceOf(const std::string& image) {
  std::error_code ignored;
  const fs::path path = fs::canonical(image, ignored);
  for (const fs::path& device : entries("/sys/block")) {
    if (firstLine(device / "loop/backing_file") == path)
      return "/dev/" + device.filename().string();
  }
  return {};
}

std::string openingObstacle(const std::string& path, bool isDevice) {
  FileDescriptor device(open(path.c_str(), O_RDWR | O_CLOEXEC | (isDevice ? O_EXCL : 0)));
  if (device) return {};
  switch (errno) {
    case EBUSY:
      return "another program uses it";
    case EACCES:
    case EPERM:
      return "you may not write to it; try as root";
    case EROFS:
      return "it is write-protected";
    case ENOMEDIUM:
      return "there is no medium in it";
    default:
      return "it cannot be opened";
  }
}

std::string deviceObstacle(const std::string& path) {
  const std::string name = kernelName(path);
  const fs::path device = kBlockDevices / name;
  if (fs::exists(device / "partition")) return "it is a partition; name the whole disk";
  if (const auto place = mountedOn(name)) {
    return *place == "/" ? "the system runs from it" : "it is mounted on " + *place;
  }
  if (isSwapOn(name)) return "the system swaps to it";
  if (firstLine(device / "ro") == "1") return "it is write-protected";
  return openingObstacle(path, true);
}

std::string imageObstacle(const std::string& path) {
  const std::string loop = loopDeviceOf(path);
  return loop.empty() ? openingObstacle(path, false) : "it is in use as " + loop;
}

std::string missingProgram() {
  if (findProgram("mkfs.fat").empty()) {
    return "the program mkfs.fat is missing; install the package dosfstools";
  }
  if (findProgram("mcopy").empty() || findProgram("mdir").empty()) {
    return "the program mcopy is missing; install the package mtools";
  }
  return {};
}

std::string findObstacle(const std::string& path) {
  if (path.find("@@") != std::string::npos) return "mtools takes no path with \"@@\"";
  struct stat facts {};
  if (stat(path.c_str(), &facts) != 0) return "it does not exist";
  std::string obstacle;
  if (S_ISBLK(facts.st_mode)) {
    obstacle = deviceObstacle(path);
  } else if (S_ISREG(facts.st_mode)) {
    obstacle = imageObstacle(path);
  } else {
    return "it is neither a disk nor an image file";
  }
  return obstacle.empty() ? missingProgram() : obstacle;
}

}  // namespace

std::uint64_t driveBytes(const std::string& path) {
  FileDescriptor device(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  struct stat facts {};
  if (!device || fstat(device.get(), &facts) != 0) return 0;
  if (!S_ISBLK(facts.st_mode)) return static_cast<std::uint64_t>(facts.st_size);
  std::uint64_t bytes = 0;
  return ioctl(device.get(), BLKGETSIZE64, &bytes) == 0 ? bytes : 0;
}

std::vector<std::string> diskPaths() {
  std::vector<std::string> paths;
  for (const fs::path& device : entries("/sys/block")) {
    std::string name = device.filename();
    if (!fs::exists(device / "device") || name.starts_with("sr") || name.starts_with("fd"))
      continue;
    std::replace(name.begin(), name.end(), '!', '/');
    paths.push_back("/dev/" + name);
  }
  return paths;
}

bool isRemovable(const std::string& path) {
  return firstLine(kBlockDevices / kernelName(path) / "removable") == "1";
}

bool isSystemDisk(const std::string& path) {
  return mountedOn(kernelName(path)) == "/";
}

DriveFacts readDriveFacts(const std::string& path) {
  DriveFacts facts;
  facts.obstacle = findObstacle(path);
  facts.bytes = driveBytes(path);
  facts.mostUsed = kMostUsed;
  FileDescriptor device(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  DriveSector sector{};
  if (!device || pread(device.get(), sector.data(), sector.size(), 0) != std::ssize(sector)) {
    return facts;
  }
  const FirstSector first = readFirstSector(sector);
  facts.label = first.label;
  facts.contents = first.contents;
  return facts;
}

}  // namespace omniset
