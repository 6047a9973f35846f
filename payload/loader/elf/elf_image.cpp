#include "payload/loader/elf/elf_image.h"

#include <algorithm>
#include <stdexcept>

#include "core/byte_cursor.h"
#include "payload/loader/common/kernel_header.h"
#include "payload/loader/common/low_memory.h"
#include "payload/loader/common/memory_map.h"

namespace omniset::loader {
namespace {

struct Segment {
  std::uint32_t offset;
  std::uint32_t address;
  std::uint32_t size;
};

KernelHeader headerOf(Bytes kernel) {
  KernelHeader header;
  std::copy_n(kernel.begin(), std::min<std::size_t>(kernel.size(), KernelHeader::kSize),
              header.bytes().begin());
  const auto fault = header.check(static_cast<std::uint32_t>(kernel.size()));
  if (fault != KernelFault::kNone || kernel.size() < kKernelBytesInImage) {
    throw std::runtime_error("The kernel is none that this loader can start.");
  }
  return header;
}

void putFileHeader(ByteWriter& writer) {
  // 32 bits, low byte first, version 1; an executable file for the 386.
  constexpr std::uint8_t kIdentity[16] = {0x7F, 'E', 'L', 'F', 1, 1, 1};
  writer.put(kIdentity);
  writer.u16le(2);
  writer.u16le(3);
  writer.u32le(1);
  writer.u32le(kElfEntry);
  writer.u32le(kElfHeaderSize);  // where the segments are described
  writer.u32le(0);               // no sections
  writer.u32le(0);
  writer.u16le(kElfHeaderSize);
  writer.u16le(kElfSegmentSize);
  writer.u16le(kElfSegments);
  writer.u16le(0);
  writer.u16le(0);
  writer.u16le(0);
}

void putSegment(ByteWriter& writer, const Segment& segment) {
  constexpr std::uint32_t kLoaded = 1;
  constexpr std::uint32_t kAllRights = 7;
  writer.u32le(kLoaded);
  writer.u32le(segment.offset);
  writer.u32le(segment.address);
  writer.u32le(segment.address);
  writer.u32le(segment.size);
  writer.u32le(segment.size);
  writer.u32le(kAllRights);
  writer.u32le(1);  // no alignment
}

}  // namespace

std::vector<std::uint8_t> makeElfImage(Bytes loader, Bytes kernel, std::uint32_t ramDiskSize) {
  if (loader.size() != kElfLoaderSize) throw std::runtime_error("The loader has a wrong size.");
  const KernelHeader header = headerOf(kernel);
  const auto kernelSize = static_cast<std::uint32_t>(kernel.size());
  const std::uint32_t setupSize = header.setupSize();
  const std::uint32_t ramDiskAt =
      std::max(kElfRamDiskLeast, roundedToPage(header.areaEnd(kernelSize)));
  if (ramDiskAt >= header.ramDiskCeiling() || ramDiskSize > header.ramDiskCeiling() - ramDiskAt) {
    throw std::runtime_error("The RAM disk has no place above the kernel.");
  }
  const Segment segments[kElfSegments] = {
      {0, kElfLoaderAt, kElfLoaderSize},
      {kElfLoaderSize, kSetupAt, setupSize},
      {kElfLoaderSize + setupSize, kKernelAt, kernelSize - setupSize},
      {kElfLoaderSize + kernelSize, ramDiskAt, ramDiskSize},
  };

  std::vector<std::uint8_t> image(loader.begin(), loader.end());
  ByteWriter writer{std::span(image).first(kElfHeaderSize + kElfSegments * kElfSegmentSize)};
  putFileHeader(writer);
  for (const Segment& segment : segments) putSegment(writer, segment);
  image.insert(image.end(), kernel.begin(), kernel.begin() + kKernelBytesInImage);
  return image;
}

}  // namespace omniset::loader
