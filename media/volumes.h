// The drives of this computer, and raw access to their volumes and disks. A seam: volumes_win32.cpp
// uses drive letters and "\\.\" paths; volumes_posix.cpp lets a letter stand for one block device
// or image file, whose volume covers the whole of it, and reaches the files on it with the programs
// of the Debian package mtools.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "media/device.h"

namespace omniset {

// Of Windows; elsewhere one of the NT family on which nothing is done otherwise.
struct SystemVersion {
  bool isNt = true;
  std::uint32_t major = 6;
  std::uint32_t minor = 0;
};

// Of a volume.
constexpr std::uint64_t kLargestFat16 = std::uint64_t{4} << 30;

// What can be told of a drive without changing anything.
struct DriveFacts {
  std::uint64_t bytes = 0;  // of the whole drive; 0: there is no medium, or it cannot be read
  std::string label;        // of the volume on it; empty: it has none
  std::string contents;     // what is on it, for the operator, such as "FAT16 volume"; may be empty
  // Why the drive must not be written, a sentence's end such as "it is mounted on /home"; empty
  // when nothing hinders.
  std::string obstacle;
  // Of a larger drive the format uses only so many bytes.
  std::uint64_t mostUsed = kLargestFat16;
};

constexpr std::size_t kDriveSectorSize = 512;
using DriveSector = std::array<std::uint8_t, kDriveSectorSize>;

// `letter` is upper-case. What opens a device returns null when that fails.
class Volumes {
 public:
  virtual ~Volumes() = default;

  virtual SystemVersion version() const = 0;

  // Raises Error "GetSystemDirectory".
  virtual std::string systemDirectory() = 0;
  // The root paths of all drives, such as "C:\"; elsewhere of all disks, such as "/dev/sda".
  // Raises Error "GetLogicalDriveStrings".
  virtual std::vector<std::string> driveStrings() = 0;
  // 2 removable, 3 fixed, anything else is neither.
  virtual std::uint32_t driveType(const std::string& root) = 0;
  virtual DriveFacts facts(const std::string& root) = 0;

  // The path that a file's name is put behind to name it in the drive's root folder.
  virtual std::string rootPath(char letter) const = 0;

  // For reading and writing, shared with others.
  virtual DevicePtr openVolume(char letter) = 0;
  virtual DevicePtr openPhysicalDisk(std::uint32_t number) = 0;
  // All that was written to the files of the drive is on the medium. False when that failed.
  virtual bool flushVolume(char letter) = 0;

  enum class Creation { kNew, kOverwrite };
  // kNew fails when there is such a file.
  virtual DevicePtr createFile(const std::string& path, Creation creation) = 0;
  virtual DevicePtr openFile(const std::string& path) = 0;  // for reading
  // For reading what is on the medium, past what the system remembers of it. The drive was flushed.
  virtual DevicePtr openWritten(const std::string& path) = 0;
  // For its size alone.
  virtual DevicePtr openWithoutAccess(const std::string& path) = 0;

  // Windows 9x: the device through which absolute sectors of a drive (A is 0) are read and written.
  class AbsoluteDisk {
   public:
    virtual ~AbsoluteDisk() = default;
    virtual bool readSector(int drive, DriveSector& into) = 0;
    virtual bool writeSector(int drive, const DriveSector& from) = 0;
    virtual bool close() = 0;
  };
  virtual std::unique_ptr<AbsoluteDisk> openAbsoluteDisk() = 0;
};

// The system's own, for the letter(s) of this computer on Windows; elsewhere `letter` stands for
// `device`, the path of a block device or of an image file, and there is no other letter.
struct DeviceOfLetter {
  char letter = 0;
  std::string device;
};
std::unique_ptr<Volumes> makeSystemVolumes(const DeviceOfLetter& device = {});

}  // namespace omniset
