// Boot code for the disk that the installer system prepares, assembled from mbr.asm and volume.asm.
#pragma once

#include <array>
#include <cstdint>

namespace omniset {

// Bytes 0 to 439 of the disk: starts the active partition.
extern const std::array<std::uint8_t, 440> mbrBootCode;

// Bytes 62 to 509 of the volume's first sector, whose bytes 0 to 2 jump there (EB 3C 90): says that
// no package brought a boot loader.
extern const std::array<std::uint8_t, 448> volumeBootCode;

}  // namespace omniset
