// A FAT volume that the Linux kernel has mounted.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "target/disk/target_disk.h"
#include "target/pc/descriptor.h"

namespace omniset {

class LinuxVolume : public Volume {
 public:
  // Mounts the device, a partition or a whole disk; `disk` is the name for the sentences.
  LinuxVolume(std::string disk, const std::string& device, TargetDisk::Access access);
  ~LinuxVolume() override;

  std::vector<VolumeEntry> list() override;
  std::uint64_t freeBytes() override;
  std::unique_ptr<VolumeFile> open(const std::string& name) override;
  std::unique_ptr<VolumeFile> create(const std::string& name) override;
  void rename(const std::string& from, const std::string& to) override;
  void remove(const std::string& name) override;
  void sync() override;
  void unmount() override;

 private:
  bool addFacts(VolumeEntry& entry) const;

  std::string disk_;
  Descriptor root_;
};

}  // namespace omniset
