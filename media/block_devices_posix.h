// What Linux tells of block devices, in /sys and /proc.
#pragma once

#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace omniset {

// Devices have the kernel's names here, such as "sda" and "sda1". What cannot be read is not there.
class BlockDevices {
 public:
  explicit BlockDevices(std::filesystem::path sys = "/sys", std::filesystem::path proc = "/proc")
      : sys_(std::move(sys)), proc_(std::move(proc)) {}

  // Of the device that a path stands for, through links; empty when it is none.
  std::string nameOf(const std::string& path) const;
  // All disks, sorted; no CDs, no floppies, nothing that is made of other devices.
  std::vector<std::string> disks() const;
  bool isRemovable(const std::string& name) const;
  // The system runs from it, or from a volume that lies on it.
  bool isSystemDisk(const std::string& name) const;
  // Why it must not be written, as DriveFacts has it; empty when nothing hinders.
  std::string obstacle(const std::string& name) const;
  // The loop device whose content is in the file, by whatever path; empty: there is none.
  std::string loopDeviceOf(const std::string& image) const;

 private:
  // "8:1", as the kernel writes them.
  using Numbers = std::set<std::string>;

  std::filesystem::path folder(const std::string& name) const {
    return sys_ / "class/block" / name;
  }
  Numbers numbersOn(const std::string& name) const;
  void addNumbers(const std::string& name, Numbers& numbers) const;
  std::vector<std::string> partitionsOf(const std::string& name) const;
  std::string holderOf(const std::string& name) const;
  std::optional<std::string> mountedOn(const Numbers& numbers) const;
  bool isSwap(const Numbers& numbers) const;

  std::filesystem::path sys_;
  std::filesystem::path proc_;
};

}  // namespace omniset
