// Sectors by the BIOS, as the boot sector reads them.
#include "payload/loader/bios/bios.h"
#include "payload/loader/common/console.h"
#include "payload/loader/disk/sectors.h"

namespace omniset::loader {
namespace {

// Some BIOSes read no more than 127 at once.
constexpr std::uint32_t kMostAtOnce = 64;

}  // namespace

extern "C" std::uint32_t readFromDrive(std::uint32_t first, std::uint32_t count, std::uint32_t to);

void readSectors(std::uint32_t first, std::uint32_t count, std::uint32_t to) {
  while (count > 0) {
    const std::uint32_t part = count < kMostAtOnce ? count : kMostAtOnce;
    const std::uint32_t done = readFromDrive(first, part, to);
    if (done > part) failWithCode("", "This disk cannot be read", done & 0xFF);
    first += done;
    to += done * kSectorSize;
    count -= done;
  }
}

void readSector(std::uint32_t number, SectorBytes& to) {
  readSectors(number, 1, offsetOf(to.data()));
}

}  // namespace omniset::loader
