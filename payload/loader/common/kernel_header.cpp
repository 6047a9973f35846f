#include "payload/loader/common/kernel_header.h"

#include "payload/loader/common/numbers.h"

namespace omniset::loader {
namespace {

// Offsets in the file.
constexpr std::uint32_t kSetupSectors = 0x1F1;
constexpr std::uint32_t kSizeOf32Bit = 0x1F4;  // in units of 16 bytes
constexpr std::uint32_t kVideoMode = 0x1FA;
constexpr std::uint32_t kBootSignature = 0x1FE;
constexpr std::uint32_t kHeaderSignature = 0x202;
constexpr std::uint32_t kProtocol = 0x206;
constexpr std::uint32_t kTypeOfLoader = 0x210;
constexpr std::uint32_t kLoadFlags = 0x211;
constexpr std::uint32_t kCodeStart = 0x214;
constexpr std::uint32_t kRamDiskAt = 0x218;
constexpr std::uint32_t kRamDiskSize = 0x21C;
constexpr std::uint32_t kHeapEnd = 0x224;
constexpr std::uint32_t kCommandLineAt = 0x228;
constexpr std::uint32_t kRamDiskLast = 0x22C;
constexpr std::uint32_t kCommandLineSize = 0x238;   // from protocol 2.06 on
constexpr std::uint32_t kPreferredAddress = 0x258;  // 64 bits; from protocol 2.10 on
constexpr std::uint32_t kInitialSize = 0x260;       // likewise

constexpr std::uint16_t kBootSignatureValue = 0xAA55;
constexpr std::uint32_t kHeaderSignatureValue = 0x53726448;  // "HdrS"
constexpr std::uint8_t kLoadedHigh = 0x01;
constexpr std::uint8_t kHeapIsUsable = 0x80;
constexpr std::uint8_t kUnknownLoader = 0xFF;
constexpr std::uint16_t kNormalVideo = 0xFFFF;

constexpr std::uint32_t kSector = 512;
constexpr std::uint32_t kMostSetup = 0x8000;

}  // namespace

std::uint16_t KernelHeader::u16(std::uint32_t at) const {
  return numberAt<std::uint16_t>(&bytes_[at]);
}

std::uint32_t KernelHeader::u32(std::uint32_t at) const {
  return numberAt<std::uint32_t>(&bytes_[at]);
}

void KernelHeader::put16(std::uint32_t at, std::uint16_t value) {
  putNumber(&bytes_[at], value);
}
void KernelHeader::put32(std::uint32_t at, std::uint32_t value) {
  putNumber(&bytes_[at], value);
}

std::uint16_t KernelHeader::protocol() const {
  return u16(kProtocol);
}

// Without setup sectors, which the oldest kernels mean as four, a kernel of today hangs.
KernelFault KernelHeader::check(std::uint32_t fileSize) const {
  if (fileSize < kSize || u16(kBootSignature) != kBootSignatureValue ||
      u32(kHeaderSignature) != kHeaderSignatureValue || bytes_[kSetupSectors] == 0) {
    return KernelFault::kNotAKernel;
  }
  if (protocol() < 0x203) return KernelFault::kOldProtocol;
  if ((bytes_[kLoadFlags] & kLoadedHigh) == 0) return KernelFault::kNotHigh;
  if (setupSize() > kMostSetup) return KernelFault::kLargeSetup;
  if (fileSize <= setupSize()) return KernelFault::kIncomplete;
  // Before protocol 2.04 only the low half says something.
  std::uint32_t units = u32(kSizeOf32Bit);
  if (protocol() < 0x204) units &= 0xFFFF;
  if (units > (fileSize - setupSize() + 15) / 16) return KernelFault::kIncomplete;
  return areaEnd(fileSize) > kReachedMemory ? KernelFault::kTooLarge : KernelFault::kNone;
}

std::uint32_t KernelHeader::setupSize() const {
  return (bytes_[kSetupSectors] + 1u) * kSector;
}

std::uint32_t KernelHeader::areaEnd(std::uint32_t fileSize) const {
  constexpr std::uint32_t kNever = ~std::uint32_t{0};
  if (fileSize > kReachedMemory) return kNever;
  const std::uint32_t loadedEnd = kKernelAt + fileSize;
  if (protocol() < 0x20A) {
    // The kernel does not tell: what it unpacks is hardly more than four times its size.
    return fileSize > kReachedMemory / 5 ? kNever : loadedEnd + fileSize * 4;
  }
  std::uint32_t start = u32(kPreferredAddress);
  const std::uint32_t size = u32(kInitialSize);
  if (u32(kPreferredAddress + 4) != 0 || start > kReachedMemory || size > kReachedMemory) {
    return kNever;
  }
  if (start < kKernelAt) start = kKernelAt;
  return start + size < loadedEnd ? loadedEnd : start + size;
}

std::uint32_t KernelHeader::ramDiskCeiling() const {
  const std::uint32_t last = u32(kRamDiskLast);
  return last < kReachedMemory ? last + 1 : kReachedMemory;
}

std::uint32_t KernelHeader::longestCommandLine() const {
  return protocol() < 0x206 ? 255 : u32(kCommandLineSize);
}

void KernelHeader::setParameters(const KernelParameters& parameters) {
  bytes_[kTypeOfLoader] = kUnknownLoader;
  bytes_[kLoadFlags] |= kHeapIsUsable;
  put16(kHeapEnd, parameters.heapEnd);
  put16(kVideoMode, kNormalVideo);
  put32(kCodeStart, kKernelAt);
  put32(kCommandLineAt, parameters.commandLineAt);
  put32(kRamDiskAt, parameters.ramDiskAt);
  put32(kRamDiskSize, parameters.ramDiskSize);
}

}  // namespace omniset::loader
