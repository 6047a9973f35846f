#include "media/boot_sector.h"

#include <algorithm>

namespace omniset {

namespace {

constexpr std::size_t kParameterBlock = 11;
constexpr std::size_t kBootCode = 62;
constexpr std::size_t kSignature = 510;

void copyTemplate(DriveSector& sector, std::size_t from, std::size_t end) {
  std::copy(bootSectorTemplate.begin() + from, bootSectorTemplate.begin() + end,
            sector.begin() + from);
}

}  // namespace

void patchBootSector(DriveSector& sector) {
  copyTemplate(sector, 0, kParameterBlock);
  copyTemplate(sector, kBootCode, kSignature);
}

DriveSector installBootSector(Device& volume) {
  DriveSector sector;
  seekDevice(volume, 0);
  readWhole(volume, sector);
  patchBootSector(sector);
  seekDevice(volume, 0);
  writeDevice(volume, sector);
  return sector;
}

}  // namespace omniset
