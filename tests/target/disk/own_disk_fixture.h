// A PC that was started from one of its disks in memory, by the loader on it.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "disk_fixture.h"
#include "target/disk/fat_boot_sector.h"
#include "target/local_installation.h"
#include "target/target_console.h"

namespace omniset::test {

constexpr std::uint32_t kOwnNumber = 0x1234ABCD;

inline const Files kInstallerFiles{{"linux", std::string(3000, 'k')},
                                   {"initrd.rgz", std::string(3000, 'r')},
                                   {"ldlinux.sys", "loader"},
                                   {"syslinux.cfg", "APPEND -hdd-install"}};
inline const Files kPackages{
    {"routing.bdl", "routes"}, {"system.bdl", std::string(5000, 's')}, {"autorun.scr", "script"}};

inline Files together(const Files& some, const Files& others) {
  Files all = some;
  all.insert(others.begin(), others.end());
  return all;
}

// A volume of another maker in place of what the disk held, on it as a whole (0) or in a partition
// from that sector on.
inline void makeVolume(FakeDisk& disk, std::uint64_t first, std::uint32_t number,
                       const Files& files) {
  disk.medium = {};
  const auto place = static_cast<std::uint32_t>(first);
  Sector sector = makeFat16BootSector({}, planFat16(20000), place, number);
  std::fill_n(sector.begin() + 3, 8, std::uint8_t{' '});
  if (first > 0) disk.medium.writeSector(0, makeMbr({}, 1, {place, 20000, 6}));
  disk.medium.writeSector(first, sector);
  disk.medium.syncSectors();
  for (const auto& [name, content] : files) disk.putFile(first, name, content);
}

struct RecordedConsole : TargetConsole {
  void say(const MacAddress& /*target*/, const std::string& sentence) override {
    said.push_back(sentence);
    if (whenSaid) whenSaid(sentence);
  }
  void progress(const MacAddress& /*target*/, const std::string& file, std::int32_t stored,
                std::int32_t size) override {
    shown.push_back(file + " " + std::to_string(stored) + " of " + std::to_string(size));
  }

  std::vector<std::string> said;
  std::vector<std::string> shown;
  std::function<void(const std::string&)> whenSaid;
};

struct OwnDiskFixture : ::testing::Test {
  ~OwnDiskFixture() override {
    EXPECT_THAT(disks.faults.violations, ::testing::IsEmpty());
    EXPECT_EQ(disk.mounted, 0);
    EXPECT_EQ(disk.openFiles, 0);
  }

  // The text of the failure, or "none".
  std::string run(std::optional<std::uint32_t> number = kOwnNumber,
                  std::uint64_t memory = 100'000'000) {
    LocalInstallation installation(disks, console, {asBytes("disk code"), asBytes("volume code")},
                                   [this] { return ++lastNumber; });
    return failureOf([&] { installation.run(number, memory); });
  }

  Installation inspect() {
    const auto opened = disks.open(disk);
    DiskInspection inspection(*opened);
    while (!inspection.step()) {
    }
    return inspection.installation();
  }

  FakeDisks disks;
  FakeDisk& disk = disks.add("sda", 64 * kMegabyte);
  RecordedConsole console;
  std::uint32_t lastNumber = 0x1000;
};

// What is on a disk, to compare.
struct DiskPicture {
  explicit DiskPicture(const FakeDisk& disk) : sectors(disk.medium.now().sectors) {
    for (const auto& [first, folder] : disk.medium.now().volumes)
      volumes[first] = disk.files(first);
  }
  bool operator==(const DiskPicture&) const = default;

  std::map<std::uint64_t, Sector> sectors;
  std::map<std::uint64_t, Files> volumes;
};

}  // namespace omniset::test
