#include "media/drive_facts_posix.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>

#include "install/router_record.h"
#include "media/block_devices_posix.h"
#include "media/child_process_posix.h"
#include "media/first_sector.h"

namespace omniset {

namespace {

// Programs that use an image, such as virtual PCs, lock a part of it.
bool isLocked(const FileDescriptor& file) {
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  return fcntl(file.get(), F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
}

std::string openingObstacle(const std::string& path, bool isDevice) {
  FileDescriptor device(open(path.c_str(), O_RDWR | O_CLOEXEC | (isDevice ? O_EXCL : 0)));
  if (device) return isLocked(device) ? "another program uses it" : "";
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
  const BlockDevices devices;
  const std::string obstacle = devices.obstacle(devices.nameOf(path));
  return obstacle.empty() ? openingObstacle(path, true) : obstacle;
}

std::string imageObstacle(const std::string& path) {
  const std::string loop = BlockDevices().loopDeviceOf(path);
  return loop.empty() ? openingObstacle(path, false) : "it is in use as /dev/" + loop;
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
  if (std::filesystem::absolute(path).string().find("@@") != std::string::npos)
    return "mtools takes no path with \"@@\"";
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
  for (std::string name : BlockDevices().disks()) {
    std::replace(name.begin(), name.end(), '!', '/');
    paths.push_back("/dev/" + name);
  }
  return paths;
}

std::uint32_t typeOfDisk(const std::string& path) {
  const BlockDevices devices;
  const std::string name = devices.nameOf(path);
  if (devices.isSystemDisk(name)) return 0;
  return devices.isRemovable(name) ? kRemovableDrive : kFixedDrive;
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
