// Disks in memory. Any operation can be made to fail or to be the last one before the power is cut;
// what the rules of target_disk.h forbid is noted.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/byte_cursor.h"
#include "target/disk/target_disk.h"
#include "tests/fakes/fake_medium.h"

namespace omniset::test {

// Thrown by the operation at which the power is cut. No standard exception, so that nothing goes
// on.
struct PowerCut {};

// The faults of all disks of a PC.
struct FaultPlan {
  static constexpr int kNever = -1;

  int operations = 0;         // done so far, on all disks
  int failAt = kNever;        // this operation fails; counted from 0
  bool failsForGood = false;  // and all after it
  int cutPowerAt = kNever;    // this operation is not done, and no other either
  bool isOff = false;
  std::vector<std::string> log;         // the operations, such as "sda rename omniset.tmp"
  std::vector<std::string> violations;  // of the rules

  // Counts an operation; raises Failure or PowerCut when it is the one.
  void pass(const std::string& operation);
  void violated(const std::string& rule) { violations.push_back(rule); }
  // Power and operations from the start again.
  void restart();
};

// A disk as such, which survives power cuts and is found anew each time.
struct FakeDisk {
  std::string name = "sda";
  std::uint64_t sectorCount = 0;
  std::string obstacle;
  std::uint64_t freeBytes = 1'000'000'000;  // of its volume, whatever is on it
  FakeMedium medium;
  int mounted = 0;
  int openFiles = 0;

  // The files of a volume that count for a test; "?" for a folder's content.
  std::map<std::string, std::string> files(std::uint64_t firstSector) const;
  void putFile(std::uint64_t firstSector, const std::string& fileName, const std::string& content);
  void putFolder(std::uint64_t firstSector, const std::string& folderName);
};

class FakeDisks : public TargetDisks {
 public:
  FakeDisk& add(const std::string& name, std::uint64_t sectorCount);
  // The disk as the system hands it out.
  std::unique_ptr<TargetDisk> open(FakeDisk& disk);

  std::vector<std::unique_ptr<TargetDisk>> find() override;

  // The power fails, or comes back: all that is mounted is gone.
  void cutPower(unsigned seed);

  FaultPlan faults;

 private:
  std::vector<std::unique_ptr<FakeDisk>> disks_;
};

}  // namespace omniset::test
