// Feeds any bytes as a volume to the disk loader's reader of FAT, which looks for a file there and
// loads it. It never leaves the volume nor the memory for files, and comes to an end.
#include <cstring>

#include "fuzz_input.h"
#include "payload/loader/common/console.h"
#include "payload/loader/common/low_memory.h"
#include "payload/loader/common/numbers.h"
#include "payload/loader/disk/fat_volume.h"

namespace {

using namespace omniset::loader;
using omniset::fuzz::require;

struct Failed {};

// The volume begins behind its hidden sectors; behind the bytes it has zeros.
std::span<const std::uint8_t> volumeBytes;
std::uint32_t hidden;
std::uint32_t sectors;

void takeFirstSector(const SectorBytes& bytes) {
  hidden = numberAt<std::uint32_t>(&bytes[28]);
  sectors = numberAt<std::uint16_t>(&bytes[19]);
  if (sectors == 0) sectors = numberAt<std::uint32_t>(&bytes[32]);
}

// Where a run of sectors is in the volume; the first sector is read by nobody.
std::uint32_t placeOf(std::uint32_t first, std::uint32_t count) {
  const std::uint32_t place = first - hidden;
  require(place > 0 && count > 0 && std::uint64_t{place} + count <= sectors);
  return place;
}

void copySector(std::uint32_t place, SectorBytes& to) {
  to = {};
  const std::uint64_t from = std::uint64_t{place} * kSectorSize;
  if (from >= volumeBytes.size()) return;
  const auto rest = volumeBytes.subspan(from);
  std::memcpy(to.data(), rest.data(), std::min<std::size_t>(rest.size(), kSectorSize));
}

}  // namespace

namespace omniset::loader {

void fail(const char*) {
  throw Failed();
}
void fail(const char*, const char*) {
  throw Failed();
}

void readSectors(std::uint32_t first, std::uint32_t count, std::uint32_t to) {
  placeOf(first, count);
  require(to >= kTransferAt && count <= kTransferRoom / kSectorSize);
  require(to - kTransferAt + count * kSectorSize <= kTransferRoom);
}

void readSector(std::uint32_t number, SectorBytes& to) {
  copySector(placeOf(number, 1), to);
}

}  // namespace omniset::loader

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  volumeBytes = std::span(data, size);
  SectorBytes first;
  copySector(0, first);
  takeFirstSector(first);
  FatVolume volume;
  try {
    volume.open(first);
    volume.openFile("linux");
    std::uint64_t loaded = 0;
    while (const std::uint32_t count = volume.readFile()) {
      require(count <= kTransferRoom);
      loaded += count;
      require(loaded <= std::uint64_t{sectors} * kSectorSize);
    }
  } catch (const Failed&) {
    return 0;
  }
  return 0;
}
