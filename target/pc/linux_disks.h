// The PC's disks as the Linux kernel shows them.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "target/disk/target_disk.h"
#include "target/pc/descriptor.h"

namespace omniset {

class LinuxDisk : public TargetDisk {
 public:
  explicit LinuxDisk(std::string name);

  std::string name() const override { return name_; }
  std::uint64_t sectorCount() const override { return sectorCount_; }
  std::string obstacle() const override;
  void readSectors(std::uint64_t first, std::span<std::uint8_t> into) override;
  void writeSectors(std::uint64_t first, std::span<const std::uint8_t> from) override;
  void flush() override;
  void rereadPartitions() override;
  std::unique_ptr<Volume> mount(Place place, Access access) override;

 private:
  std::string name_;
  Descriptor device_;
  std::uint64_t sectorCount_ = 0;
};

class LinuxDisks : public TargetDisks {
 public:
  // Those that can be opened; a drive without a medium cannot.
  std::vector<std::unique_ptr<TargetDisk>> find() override;
};

}  // namespace omniset
