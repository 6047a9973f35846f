// The first kilobyte of a Linux kernel image (bzImage) with the header of the Linux boot protocol.
#pragma once

#include <array>
#include <cstdint>

namespace omniset::loader {

enum class KernelFault {
  kNone,
  kNotAKernel,
  kOldProtocol,  // before 2.03
  kNotHigh,      // a kernel to be loaded below 640 KB
  kLargeSetup,   // its real-mode part has more than 32 KB
  kIncomplete,   // the file ends before the kernel does
  kTooLarge,     // it wants more memory than any PC gives it
};

// Where the 32-bit part of every kernel is loaded; where it runs is its own business.
inline constexpr std::uint32_t kKernelAt = 0x100000;
// Kernels of 32 bits reach so much memory without further ado: the RAM disk is below it.
inline constexpr std::uint32_t kReachedMemory = 0x38000000;

struct KernelParameters {
  std::uint32_t commandLineAt = 0;
  std::uint32_t ramDiskAt = 0;  // 0 with a size of 0: there is none
  std::uint32_t ramDiskSize = 0;
  std::uint16_t heapEnd = 0;  // in the segment of the real-mode part
};

class KernelHeader {
 public:
  static constexpr std::uint32_t kSize = 1024;

  std::array<std::uint8_t, kSize>& bytes() { return bytes_; }

  // Whether a file of so many bytes with this header can be started. The questions below count
  // only when it can.
  KernelFault check(std::uint32_t fileSize) const;

  // How many bytes of the file the real-mode part has; the 32-bit part is what follows.
  std::uint32_t setupSize() const;
  // The first address behind what the kernel uses before it looks at the memory map.
  std::uint32_t areaEnd(std::uint32_t fileSize) const;
  // The RAM disk ends at or before this address.
  std::uint32_t ramDiskCeiling() const;
  // Without the final zero.
  std::uint32_t longestCommandLine() const;

  void setParameters(const KernelParameters& parameters);

 private:
  std::uint16_t u16(std::uint32_t at) const;
  std::uint32_t u32(std::uint32_t at) const;
  void put16(std::uint32_t at, std::uint16_t value);
  void put32(std::uint32_t at, std::uint32_t value);
  std::uint16_t protocol() const;

  std::array<std::uint8_t, kSize> bytes_{};
};

}  // namespace omniset::loader
