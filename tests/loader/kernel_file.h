// Files that begin as Linux kernels do.
#pragma once

#include <cstdint>
#include <vector>

#include "payload/loader/common/kernel_header.h"
#include "payload/loader/common/numbers.h"

namespace omniset::loader::test {

// What a kernel's header says; the file fits it.
struct KernelFacts {
  std::uint8_t setupSectors = 3;
  std::uint32_t size32Bit = 0x3000;
  std::uint16_t protocol = 0x20F;
  std::uint32_t preferredAddress = 0x200000;
  std::uint32_t initialSize = 0x100000;
  std::uint32_t ramDiskLast = 0x7FFFFFFF;
  std::uint32_t longestCommandLine = 2047;
};

// The content is different at every place where it matters.
inline std::vector<std::uint8_t> makeKernel(const KernelFacts& facts = {}) {
  std::vector<std::uint8_t> file((facts.setupSectors + 1u) * 512 + facts.size32Bit);
  for (std::size_t i = 0; i < file.size(); ++i) {
    file[i] = static_cast<std::uint8_t>(i * 7 + i / 256);
  }
  file[0x1F1] = facts.setupSectors;
  putNumber<std::uint32_t>(&file[0x1F4], facts.size32Bit / 16);
  putNumber<std::uint16_t>(&file[0x1FE], 0xAA55);
  putNumber<std::uint32_t>(&file[0x202], 0x53726448);
  putNumber<std::uint16_t>(&file[0x206], facts.protocol);
  file[0x211] = 1;
  putNumber<std::uint32_t>(&file[0x22C], facts.ramDiskLast);
  putNumber<std::uint32_t>(&file[0x238], facts.longestCommandLine);
  putNumber<std::uint32_t>(&file[0x258], facts.preferredAddress);
  putNumber<std::uint32_t>(&file[0x25C], 0);
  putNumber<std::uint32_t>(&file[0x260], facts.initialSize);
  return file;
}

inline KernelHeader headerOf(const std::vector<std::uint8_t>& file) {
  KernelHeader header;
  for (std::size_t i = 0; i < KernelHeader::kSize && i < file.size(); ++i) {
    header.bytes()[i] = file[i];
  }
  return header;
}

}  // namespace omniset::loader::test
