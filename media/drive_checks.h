// What is looked at before the first byte of a drive is written.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "media/drive_maker.h"
#include "media/media_services.h"
#include "media/volumes.h"

namespace omniset {

constexpr std::uint64_t kFloppyBytes = 1'474'560;

// Bytes that files of these sizes take on a volume of so many bytes, with what a FAT volume needs
// for itself; rather too many than too few.
std::uint64_t bytesNeeded(const std::vector<std::uint64_t>& fileSizes, std::uint64_t volumeBytes);

// Why the drive cannot be made into such a disk or floppy, as a sentence for the operator that
// names the drive; empty when nothing hinders. Writes nothing. Raises Error of loadImage, and
// Failure with a sentence about a package or the script: one that is not there ("Cannot open file:
// " and its path), lies on that drive, or has a name that cannot be there.
std::string driveObstacle(const std::string& drive, const DriveFacts& facts, const RInfo& what,
                          const MediaServices& services);
std::string floppyObstacle(const std::string& drive, const DriveFacts& facts);

// "512 MB", "1440 KB".
std::string driveSizeText(std::uint64_t bytes);

// The drive with its size and label, such as `E:\ (512 MB, label "KESTRIX")`.
std::string driveDescription(const std::string& drive, const DriveFacts& facts);

}  // namespace omniset
