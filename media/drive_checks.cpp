#include "media/drive_checks.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <set>

#include "core/error.h"
#include "core/file_name.h"
#include "core/path.h"
#include "media/image_file.h"

namespace omniset {

namespace {

constexpr std::array<const char*, 5> kSystemNames{"linux", "initrd.rgz", "ldlinux.sys",
                                                  "syslinux.cfg", "autorun.scr"};

constexpr std::uint64_t kKilobyte = 1024;
constexpr std::uint64_t kMegabyte = 1024 * kKilobyte;

// Some systems tell no more of a floppy than the room for files on it.
constexpr std::uint64_t kFloppyDataBytes = 2847 * 512;
// Of floppy drives of any kind.
constexpr std::uint64_t kLargestFloppy = 2 * kFloppyBytes;

// The least that a format makes of a disk's root folder, less the volume's label.
constexpr std::size_t kRootEntries = 512 - 1;

// The script of a baud rate alone.
constexpr std::uint64_t kShortFile = 64;

// No format command takes larger clusters for a FAT volume of this size.
std::uint64_t largestCluster(std::uint64_t volumeBytes) {
  if (volumeBytes < 16 * kMegabyte) return 4 * kKilobyte;
  if (volumeBytes <= 32 * kMegabyte) return 8 * kKilobyte;
  if (volumeBytes <= 512 * kMegabyte) return 16 * kKilobyte;
  if (volumeBytes <= 2048 * kMegabyte) return 32 * kKilobyte;
  return 64 * kKilobyte;
}

// Two file allocation tables, the root folder, reserved sectors.
std::uint64_t tableBytes(std::uint64_t volumeBytes) {
  return volumeBytes <= 16 * kMegabyte ? 64 * kKilobyte : 384 * kKilobyte;
}

std::uint64_t sizeOf(const MediaServices& services, const std::string& path) {
  try {
    return fileSize(*services.volumes, path);
  } catch (const Failure& failure) {
    throw Failure(failure.what() + (": " + path));
  }
}

// Upwards, so that it is never the size that is too small.
std::string roundedSizeText(std::uint64_t bytes) {
  return driveSizeText(bytes < 10 * kMegabyte ? bytes + kKilobyte - 1 : bytes + kMegabyte - 1);
}

std::string unusable(const std::string& drive, const DriveFacts& facts) {
  if (!facts.obstacle.empty()) return drive + " cannot be used: " + facts.obstacle + ".";
  if (facts.bytes == 0) return drive + " cannot be used: there is no medium in it.";
  return {};
}

// What systems make of other letters on a FAT volume differs.
bool isAscii(const std::string& name) {
  return std::all_of(name.begin(), name.end(), [](char c) { return c >= ' ' && c < 127; });
}

// Raises Failure for a name that cannot be on every FAT volume, or that two packages share there.
void requireNames(const RInfo& what) {
  std::set<std::string> names;
  std::size_t entries = 0;
  for (const char* name : kSystemNames) entries += fatEntriesOf(name);
  for (const std::string& name : what.packageFiles) {
    if (!isFatFileName(name) || !isAscii(name))
      throw Failure("A package of this name cannot be on a disk: " + name);
    if (!names.insert(foldedFileName(name)).second) {
      throw Failure("Two packages have the same name but for case: " + name);
    }
    entries += fatEntriesOf(name);
  }
  if (entries <= kRootEntries) return;
  throw Failure(
      "These packages have too many or too long names for one disk: select fewer of them");
}

bool isOnDrive(const std::string& path, const std::string& root) {
  const std::string whole = std::filesystem::absolute(path).string();
  return foldedFileName(path).starts_with(foldedFileName(root)) ||
         foldedFileName(whole).starts_with(foldedFileName(root));
}

// What is copied would go with the drive's old contents.
void requireElsewhere(const RInfo& what, const std::string& root) {
  if (isOnDrive(what.packageDirectory, root)) {
    throw Failure("The packages are on the drive that is to be erased: " + what.packageDirectory);
  }
  if (what.useScriptFile && isOnDrive(what.scriptFile, root)) {
    throw Failure("The script is on the drive that is to be erased: " + what.scriptFile);
  }
}

std::vector<std::uint64_t> sizesFor(const RInfo& what, const MediaServices& services) {
  std::vector<std::uint64_t> sizes;
  for (const int image : {kKernelImage, kRamDiskImage, kDiskLoaderImage, kDiskConfigurationImage}) {
    sizes.push_back(services.loadImage(image).length);
  }
  for (const std::string& name : what.packageFiles) {
    sizes.push_back(sizeOf(services, joinPath(what.packageDirectory, name)));
  }
  sizes.push_back(kShortFile + (what.useScriptFile ? sizeOf(services, what.scriptFile) : 0));
  return sizes;
}

}  // namespace

std::uint64_t bytesNeeded(const std::vector<std::uint64_t>& fileSizes, std::uint64_t volumeBytes) {
  const std::uint64_t cluster = largestCluster(volumeBytes);
  std::uint64_t needed = tableBytes(volumeBytes);
  for (const std::uint64_t size : fileSizes) needed += (size + cluster - 1) / cluster * cluster;
  return needed;
}

std::string driveObstacle(const std::string& drive, const DriveFacts& facts, const RInfo& what,
                          const MediaServices& services) {
  if (const std::string reason = unusable(drive, facts); !reason.empty()) return reason;
  const std::uint64_t volumeBytes = std::min(facts.bytes, facts.mostUsed);
  if (volumeBytes > kLargestFat16) {
    return drive + " cannot be used: it has " + driveSizeText(facts.bytes) +
           ", and no more than 4 GB can be formatted with FAT16. Use a smaller one.";
  }
  requireNames(what);
  requireElsewhere(what, services.volumes->rootPath(what.driveLetter));
  const std::uint64_t needed = bytesNeeded(sizesFor(what, services), volumeBytes);
  if (needed <= volumeBytes) return {};
  if (volumeBytes < facts.bytes) {
    return "The packages do not fit " + drive + ": of its " + driveSizeText(facts.bytes) +
           " no more than " + driveSizeText(volumeBytes) + " are used, and " +
           roundedSizeText(needed) + " are needed. Select fewer packages.";
  }
  return drive + " is too small: it has " + driveSizeText(facts.bytes) + ", and " +
         roundedSizeText(needed) + " are needed. Use a larger one, or select fewer packages.";
}

// A disk that was named by mistake is not lost for a floppy.
std::string floppyObstacle(const std::string& drive, const DriveFacts& facts) {
  if (const std::string reason = unusable(drive, facts); !reason.empty()) return reason;
  const std::string size = " has " + driveSizeText(facts.bytes);
  if (facts.bytes < kFloppyDataBytes) {
    return drive + " is too small: it" + size + ", and a floppy of 1440 KB is needed.";
  }
  if (facts.bytes > kLargestFloppy) return drive + " is no floppy: it" + size + ".";
  return {};
}

std::string driveSizeText(std::uint64_t bytes) {
  if (bytes < 10 * kMegabyte) return std::to_string(bytes / kKilobyte) + " KB";
  if (bytes < 10 * 1024 * kMegabyte) return std::to_string(bytes / kMegabyte) + " MB";
  return std::to_string(bytes / (1024 * kMegabyte)) + " GB";
}

std::string driveDescription(const std::string& drive, const DriveFacts& facts) {
  const std::string label = facts.label.empty() ? "no label" : "label \"" + facts.label + "\"";
  return drive + " (" + driveSizeText(facts.bytes) + ", " + label + ")";
}

}  // namespace omniset
