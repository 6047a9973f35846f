// The image that a boot ROM loads as one ELF file: loader, kernel and RAM disk. What is kept as an
// image of its own ends with the kernel's first bytes, so that the server puts the file together
// from three pieces: this image, the rest of the kernel, the RAM disk.
//
//   segment        in the file                               in memory
//   loader         kElfLoaderSize bytes, with the headers    kElfLoaderAt
//   real-mode part of the kernel                             kSetupAt
//   32-bit part of the kernel                                kKernelAt
//   RAM disk                                                 above what the kernel uses
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace omniset::loader {

inline constexpr std::uint32_t kElfImageSize = 22396;
inline constexpr std::uint32_t kKernelBytesInImage = 3024;
inline constexpr std::uint32_t kElfLoaderSize = kElfImageSize - kKernelBytesInImage;

inline constexpr std::uint32_t kElfLoaderAt = 0x7C00;
inline constexpr std::uint32_t kElfHeaderSize = 52;
inline constexpr std::uint32_t kElfSegmentSize = 32;
inline constexpr std::uint32_t kElfSegments = 4;
// The loader's code begins behind the headers.
inline constexpr std::uint32_t kElfEntry =
    kElfLoaderAt + kElfHeaderSize + kElfSegments * kElfSegmentSize;

// Where the loader finds the segments of the kernel's 32-bit part and of the RAM disk, and in them
// address and size.
inline constexpr std::uint32_t kElfKernel = kElfHeaderSize + 2 * kElfSegmentSize;
inline constexpr std::uint32_t kElfRamDisk = kElfHeaderSize + 3 * kElfSegmentSize;
inline constexpr std::uint32_t kElfSegmentAddress = 12;
inline constexpr std::uint32_t kElfSegmentLength = 16;

// The RAM disk is not below: ROMs and their data are rather there.
inline constexpr std::uint32_t kElfRamDiskLeast = 0x800000;

using Bytes = std::span<const std::uint8_t>;

// `loader` are kElfLoaderSize bytes, with room for the headers. Throws std::runtime_error with a
// sentence when the kernel is none that can be started.
std::vector<std::uint8_t> makeElfImage(Bytes loader, Bytes kernel, std::uint32_t ramDiskSize);

}  // namespace omniset::loader
