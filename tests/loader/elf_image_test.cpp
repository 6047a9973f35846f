#include "payload/loader/elf/elf_image.h"

#include <gmock/gmock.h>

#include <stdexcept>

#include "core/byte_cursor.h"
#include "kernel_file.h"
#include "payload/loader/common/low_memory.h"

namespace omniset::loader::test {
namespace {

using ::testing::ElementsAre;

constexpr std::uint32_t kRamDiskSize = 96695;
const KernelFacts kFacts{.setupSectors = 31, .size32Bit = 0x137200};

struct Segment {
  std::uint32_t type, offset, virtualAddress, address, fileSize, memorySize;
};

std::vector<Segment> segmentsOf(const std::vector<std::uint8_t>& image) {
  ByteReader reader(image);
  reader.take(kElfHeaderSize);
  std::vector<Segment> segments;
  for (std::uint32_t i = 0; i < kElfSegments; ++i) {
    segments.push_back({reader.u32le(), reader.u32le(), reader.u32le(), reader.u32le(),
                        reader.u32le(), reader.u32le()});
    reader.take(8);
  }
  return segments;
}

class ElfImage : public ::testing::Test {
 protected:
  std::vector<std::uint8_t> make(const std::vector<std::uint8_t>& file) const {
    return makeElfImage(loader, file, kRamDiskSize);
  }

  // As the server puts it together.
  std::vector<std::uint8_t> assembled() const {
    auto all = make(kernel);
    all.insert(all.end(), kernel.begin() + 3024, kernel.end());
    all.insert(all.end(), kRamDiskSize, 0xDD);
    return all;
  }

  const std::vector<std::uint8_t> loader = std::vector<std::uint8_t>(kElfLoaderSize, 0xEE);
  const std::vector<std::uint8_t> kernel = makeKernel(kFacts);
};

TEST_F(ElfImage, HasItsSizeWhateverTheKernel) {
  EXPECT_EQ(make(kernel).size(), 22396u);
  EXPECT_EQ(make(makeKernel()).size(), 22396u);
}

TEST_F(ElfImage, IsAProgramForThe386WithItsHeadersInFront) {
  const auto image = make(kernel);
  ByteReader reader(image);
  const auto identity = reader.take(16);
  EXPECT_EQ(asText(identity.first(4)),
            "\x7F"
            "ELF");
  EXPECT_THAT(identity.subspan(4, 3), ElementsAre(1, 1, 1));
  EXPECT_EQ(reader.u16le(), 2);  // to be executed
  EXPECT_EQ(reader.u16le(), 3);  // on a 386
  EXPECT_EQ(reader.u32le(), 1u);
  EXPECT_EQ(reader.u32le(), kElfEntry);
  EXPECT_EQ(reader.u32le(), 52u);
  EXPECT_EQ(reader.u32le(), 0u);  // no sections
  EXPECT_EQ(reader.u32le(), 0u);
  EXPECT_EQ(reader.u16le(), 52);
  EXPECT_EQ(reader.u16le(), 32);
  EXPECT_EQ(reader.u16le(), 4);
  EXPECT_EQ(reader.u16le(), 0);
  EXPECT_EQ(reader.u16le(), 0);
  EXPECT_EQ(reader.u16le(), 0);
}

TEST_F(ElfImage, SegmentsCoverTheAssembledFileInItsOrder) {
  std::uint32_t end = 0;
  for (const Segment& segment : segmentsOf(make(kernel))) {
    EXPECT_EQ(segment.type, 1u);
    EXPECT_EQ(segment.offset, end);
    EXPECT_EQ(segment.fileSize, segment.memorySize);
    EXPECT_EQ(segment.virtualAddress, segment.address);
    end += segment.fileSize;
  }
  EXPECT_EQ(end, assembled().size());
}

TEST_F(ElfImage, SegmentsPutEverythingToItsPlace) {
  const auto file = assembled();
  const auto segments = segmentsOf(file);
  const auto content = [&](const Segment& segment) {
    return std::vector(file.begin() + segment.offset,
                       file.begin() + segment.offset + segment.fileSize);
  };
  EXPECT_EQ(segments[0].address, 0x7C00u);
  EXPECT_EQ(content(segments[0]).back(), 0xEE);
  EXPECT_EQ(segments[1].address, kSetupAt);
  EXPECT_EQ(content(segments[1]), std::vector(kernel.begin(), kernel.begin() + 0x4000));
  EXPECT_EQ(segments[2].address, kKernelAt);
  EXPECT_EQ(content(segments[2]), std::vector(kernel.begin() + 0x4000, kernel.end()));
  EXPECT_EQ(segments[3].address, 0x800000u);
  EXPECT_EQ(content(segments[3]), std::vector<std::uint8_t>(kRamDiskSize, 0xDD));
}

TEST_F(ElfImage, TheLoaderKeepsItsCodeBehindTheHeaders) {
  const auto image = make(kernel);
  EXPECT_EQ(kElfEntry - kElfLoaderAt, 180u);
  EXPECT_EQ(std::vector(image.begin() + 180, image.begin() + kElfLoaderSize),
            std::vector<std::uint8_t>(kElfLoaderSize - 180, 0xEE));
}

TEST_F(ElfImage, TheRamDiskIsAboveWhatALargeKernelUses) {
  KernelFacts facts = kFacts;
  facts.preferredAddress = 0x1000000;
  facts.initialSize = 0x1000001;
  EXPECT_EQ(segmentsOf(make(makeKernel(facts)))[3].address, 0x2001000u);
}

TEST_F(ElfImage, ARamDiskThatTheKernelDoesNotReachIsRefused) {
  KernelFacts facts = kFacts;
  facts.ramDiskLast = 0x800000 + kRamDiskSize - 1;
  EXPECT_NO_THROW(make(makeKernel(facts)));
  facts.ramDiskLast -= 1;
  EXPECT_THROW(make(makeKernel(facts)), std::runtime_error);
  facts.ramDiskLast = 0x700000;
  EXPECT_THROW(make(makeKernel(facts)), std::runtime_error);
}

TEST_F(ElfImage, WhatIsNoWholeKernelIsRefused) {
  EXPECT_THROW(make({}), std::runtime_error);
  EXPECT_THROW(make(std::vector<std::uint8_t>(100000, 0xFF)), std::runtime_error);
  auto cut = kernel;
  cut.resize(cut.size() - 16);
  EXPECT_THROW(make(cut), std::runtime_error);
  EXPECT_THROW(make(makeKernel({.setupSectors = 1, .size32Bit = 16})), std::runtime_error);
}

TEST_F(ElfImage, ALoaderOfAnotherSizeIsRefused) {
  EXPECT_THROW(makeElfImage(std::vector<std::uint8_t>(kElfLoaderSize - 1), kernel, kRamDiskSize),
               std::runtime_error);
}

}  // namespace
}  // namespace omniset::loader::test
