// Looks at files of a mounted volume and reads them.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "target/disk/crc32.h"
#include "target/disk/installation_mark.h"
#include "target/disk/target_disk.h"

namespace omniset {

// The installer system on the media that start it.
constexpr const char* kKernelName = "linux";
constexpr const char* kRamDiskName = "initrd.rgz";

// The entry that is a file of that name; null when there is none.
const VolumeEntry* findFile(const std::vector<VolumeEntry>& entries, std::string_view name);

// Each file is there with its size. Names the first that is not, null when all are.
const MarkedFile* findMissing(const std::vector<VolumeEntry>& entries, const MarkedFiles& files);

// Reads a file from its begin to its end and tells its size and checksum, a slice at a time.
class FileCheck {
 public:
  explicit FileCheck(std::unique_ptr<VolumeFile> file) : file_(std::move(file)) {}

  // Reads 64 KB; false at the end of the file.
  bool step();
  std::uint64_t size() const { return size_; }
  std::uint32_t crc() const { return crc_.value(); }

 private:
  std::unique_ptr<VolumeFile> file_;
  std::uint64_t size_ = 0;
  Crc32 crc_;
};

}  // namespace omniset
