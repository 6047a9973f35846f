// Disks for the fuzz targets.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

#include "core/file_name.h"
#include "core/format_text.h"
#include "fuzz_input.h"
#include "target/disk/crc32.h"
#include "target/disk/disk_inspection.h"
#include "target/disk/disk_store.h"
#include "tests/fakes/fake_disk.h"

namespace omniset::fuzz {

constexpr std::uint64_t kDiskSectors = 16384;
constexpr std::uint64_t kPartitionAt = 63;

// The lines with the checksum that belongs to them.
inline std::string checkedMark(const std::string& lines) {
  Crc32 crc;
  crc.add({reinterpret_cast<const std::uint8_t*>(lines.data()), lines.size()});
  return lines + formatText("check %08x\n", static_cast<unsigned>(crc.value()));
}

// A disk with an installation, and a file beside it.
struct InstalledDisk {
  InstalledDisk() {
    DiskStore store(
        disks, [](const std::string&) {}, {}, false, [] { return 1u; });
    store.beginPreparation(false);
    store.openFile("a.bdl", 1);
    const std::uint8_t byte = 'a';
    store.write({&byte, 1});
    store.closeFile();
    store.finish();
    disk.putFile(kPartitionAt, "config.db", "precious");
  }

  test::FakeDisks disks;
  test::FakeDisk& disk = disks.add("sda", kDiskSectors);
};

// The inspection ends, and leaves nothing behind.
inline Installation inspect(test::FakeDisks& disks, test::FakeDisk& disk) {
  const auto opened = disks.open(disk);
  DiskInspection inspection(*opened);
  for (int steps = 0; !inspection.step(); ++steps) require(steps < 10'000);
  require(disk.mounted == 0 && disks.faults.violations.empty());
  return inspection.installation();
}

}  // namespace omniset::fuzz
