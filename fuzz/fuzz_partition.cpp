// Feeds any sectors to the readers of partition tables and boot sectors: what they take lies within
// the disk. Then they are the begin of a disk and of its partition, and the disk is installed on.
#include "core/error.h"
#include "fuzz_disk.h"
#include "fuzz_input.h"
#include "target/disk/fat_boot_sector.h"

namespace {

using namespace omniset;
using fuzz::FuzzInput;
using fuzz::require;

Sector takeSector(FuzzInput& input) {
  Sector sector{};
  const auto bytes = input.bytes(kSectorSize);
  std::copy(bytes.begin(), bytes.end(), sector.begin());
  return sector;
}

void readSectors(const Sector& sector, std::uint64_t diskSectors) {
  const auto partition = firstPartition(sector, diskSectors);
  if (partition) {
    require(partition->first > 0 && partition->count > 0 && partition->type != 0);
    require(std::uint64_t{partition->first} + partition->count <= diskSectors);
  }
  if (looksLikeFat(sector)) require(sector[510] == 0x55 && sector[511] == 0xAA);
}

// What cannot be kept is not touched.
void prepare(DiskStore& store, const test::FakeDisk& disk, bool keep) {
  const auto before = disk.medium.now().sectors;
  try {
    return store.beginPreparation(keep);
  } catch (const Failure&) {
    require(keep && disk.medium.now().sectors == before);
  }
  store.beginPreparation(false);
}

void installOn(const Sector& first, const Sector& second, bool bootedFromMedium, bool keep) {
  test::FakeDisks disks;
  test::FakeDisk& disk = disks.add("sda", fuzz::kDiskSectors);
  disk.medium.writeSector(0, first);
  const auto partition = firstPartition(first, disk.sectorCount);
  if (partition) disk.medium.writeSector(partition->first, second);
  require(fuzz::inspect(disks, disk) != Installation::kComplete);
  DiskStore store(
      disks, [](const std::string&) {}, {}, bootedFromMedium, [] { return 1u; });
  prepare(store, disk, keep);
  store.finish();
  require(fuzz::inspect(disks, disk) == Installation::kComplete);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzInput input(data, size);
  const std::uint8_t choices = input.u8();
  const std::uint64_t diskSectors = std::uint64_t{input.u16()} << (choices >> 4);
  const Sector first = takeSector(input);
  const Sector second = takeSector(input);
  readSectors(first, diskSectors);
  readSectors(second, diskSectors);
  installOn(first, second, choices & 1, choices & 2);
  return 0;
}
