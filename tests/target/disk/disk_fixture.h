// A PC with disks in memory, and installations on them.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/error.h"
#include "target/disk/disk_inspection.h"
#include "target/disk/disk_store.h"
#include "tests/fakes/fake_disk.h"

namespace omniset::test {

constexpr std::uint64_t kMegabyte = 2048;  // in sectors
constexpr std::uint64_t kPartitionAt = 2048;

using Files = std::map<std::string, std::string>;

inline std::span<const std::uint8_t> asBytes(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

template <class Call>
std::string failureOf(Call call) {
  try {
    call();
  } catch (const Failure& e) {
    return e.what();
  }
  return "none";
}

struct DiskFixture : ::testing::Test {
  ~DiskFixture() override {
    store.reset();
    EXPECT_THAT(disks.faults.violations, ::testing::IsEmpty());
    EXPECT_EQ(disk.mounted, 0);
    EXPECT_EQ(disk.openFiles, 0);
  }

  std::unique_ptr<DiskStore> makeStore(bool bootedFromMedium = false) {
    return std::make_unique<DiskStore>(
        disks, [this](const std::string& sentence) { said.push_back(sentence); },
        BootCode{asBytes("disk code"), asBytes("volume code")}, bootedFromMedium,
        [this] { return ++lastNumber; });
  }

  void put(const std::string& name, std::string_view content) {
    store->openFile(name, static_cast<std::int32_t>(content.size()));
    // As they come over the link: in pieces.
    for (std::size_t at = 0; at < content.size(); at += kPiece) {
      store->write(asBytes(content.substr(at, kPiece)));
    }
    store->closeFile();
  }

  void install(const Files& files, bool keep = false) {
    store->beginPreparation(keep);
    for (const auto& [name, content] : files) put(name, content);
    store->finish();
  }

  // After a restart of the PC.
  Installation inspect() {
    const auto opened = disks.open(disk);
    DiskInspection inspection(*opened);
    while (!inspection.step()) {
    }
    return inspection.installation();
  }

  // The files that are on the disk, without the mark.
  Files files() const {
    Files found = disk.files(kPartitionAt);
    found.erase(kMarkName);
    return found;
  }

  bool hasSaid(std::string_view part) const {
    return std::any_of(said.begin(), said.end(), [&](const std::string& sentence) {
      return sentence.find(part) != std::string::npos;
    });
  }

  static constexpr std::size_t kPiece = 1452;

  FakeDisks disks;
  FakeDisk& disk = disks.add("sda", 64 * kMegabyte);
  std::vector<std::string> said;
  std::uint32_t lastNumber = 0x1000;
  std::unique_ptr<DiskStore> store = makeStore();
};

}  // namespace omniset::test
