// Feeds any first sector of a drive to what tells the operator what is on it, and to what makes it
// a boot sector.
#include "fuzz_input.h"
#include "media/boot_sector.h"
#include "media/first_sector.h"

namespace {

using namespace omniset;
using fuzz::require;

void read(const DriveSector& sector) {
  const FirstSector told = readFirstSector(sector);
  require(!told.contents.empty());
  require(told.label.size() <= 11 && told.contents.size() <= 32);
}

void patch(DriveSector sector) {
  const DriveSector before = sector;
  patchBootSector(sector);
  for (std::size_t i = 0; i < sector.size(); ++i) {
    const bool isFormats = (i >= 11 && i <= 61) || i >= 510;
    require(sector[i] == (isFormats ? before[i] : bootSectorTemplate[i]));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  DriveSector sector{};
  std::copy_n(data, std::min(size, sector.size()), sector.begin());
  read(sector);
  patch(sector);
  return 0;
}
