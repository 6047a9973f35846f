// The boot images, carried inside the program by their numbers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace omniset {

enum BootImageNumber : int {
  kKernelImage = 120,
  kRamDiskImage = 121,
  kDiskLoaderImage = 122,
  kFloppyConfigurationImage = 123,
  kDiskConfigurationImage = 124,
  kNetworkBootProgramImage = 125,
  kNetworkConfigurationImage = 126,
  kEtherbootImage = 127,
};

// Read-only; lives as long as the program.
struct BootImage {
  const std::uint8_t* content = nullptr;
  std::size_t length = 0;

  std::span<const std::uint8_t> bytes() const { return {content, length}; }
};

// Copies nothing. Raises Error "FindResource()", "LoadResource()" or "LockResource()". Any thread.
BootImage loadBootImage(int number);

}  // namespace omniset
