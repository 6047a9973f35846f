#include "payload/loader/common/kernel_header.h"

#include <gmock/gmock.h>

#include "kernel_file.h"

namespace omniset::loader::test {
namespace {

KernelFault faultOf(const std::vector<std::uint8_t>& file) {
  return headerOf(file).check(static_cast<std::uint32_t>(file.size()));
}

TEST(KernelHeader, AWholeKernelCanBeStarted) {
  EXPECT_EQ(faultOf(makeKernel()), KernelFault::kNone);
}

TEST(KernelHeader, OtherFilesAreNoKernels) {
  for (const std::size_t at : {0x1FE, 0x1FF, 0x202, 0x205}) {
    auto file = makeKernel();
    file[at] ^= 1;
    EXPECT_EQ(faultOf(file), KernelFault::kNotAKernel) << at;
  }
  EXPECT_EQ(faultOf({}), KernelFault::kNotAKernel);
  EXPECT_EQ(faultOf(std::vector<std::uint8_t>(100000, 0xFF)), KernelFault::kNotAKernel);
  EXPECT_EQ(faultOf(std::vector<std::uint8_t>(100000, 0)), KernelFault::kNotAKernel);
}

TEST(KernelHeader, AFileThatEndsInItsHeaderIsNoKernel) {
  auto file = makeKernel();
  file.resize(1023);
  EXPECT_EQ(faultOf(file), KernelFault::kNotAKernel);
}

TEST(KernelHeader, WithoutSetupSectorsIsNoKernel) {
  auto file = makeKernel();
  file[0x1F1] = 0;
  EXPECT_EQ(faultOf(file), KernelFault::kNotAKernel);
}

TEST(KernelHeader, ProtocolsBefore203AreTooOld) {
  EXPECT_EQ(faultOf(makeKernel({.protocol = 0x202})), KernelFault::kOldProtocol);
  EXPECT_EQ(faultOf(makeKernel({.protocol = 0x203})), KernelFault::kNone);
}

TEST(KernelHeader, AKernelForLowMemoryIsRefused) {
  auto file = makeKernel();
  file[0x211] = 0x80;
  EXPECT_EQ(faultOf(file), KernelFault::kNotHigh);
}

TEST(KernelHeader, TheRealModePartHasAtMost32Kilobytes) {
  EXPECT_EQ(faultOf(makeKernel({.setupSectors = 63})), KernelFault::kNone);
  EXPECT_EQ(faultOf(makeKernel({.setupSectors = 64})), KernelFault::kLargeSetup);
  EXPECT_EQ(faultOf(makeKernel({.setupSectors = 255})), KernelFault::kLargeSetup);
}

TEST(KernelHeader, ACutKernelIsNotComplete) {
  const auto whole = makeKernel();
  for (const std::size_t size : {whole.size() - 16, whole.size() / 2, std::size_t{2048}}) {
    auto file = whole;
    file.resize(size);
    EXPECT_EQ(faultOf(file), KernelFault::kIncomplete) << size;
  }
}

TEST(KernelHeader, AKernelsLastUnitOf16BytesNeedsNotBeFull) {
  auto file = makeKernel();
  file.resize(file.size() - 15);
  EXPECT_EQ(faultOf(file), KernelFault::kNone);
}

TEST(KernelHeader, ARealModePartAloneIsNotComplete) {
  EXPECT_EQ(faultOf(makeKernel({.size32Bit = 0})), KernelFault::kIncomplete);
  // Of the least that is no stranger: a header's kilobyte.
  EXPECT_EQ(faultOf(makeKernel({.setupSectors = 1, .size32Bit = 0})), KernelFault::kIncomplete);
}

TEST(KernelHeader, BytesBehindTheKernelDoNoHarm) {
  auto file = makeKernel();
  file.resize(file.size() + 5000);
  EXPECT_EQ(faultOf(file), KernelFault::kNone);
}

TEST(KernelHeader, ASizeOfAllOnesIsNotComplete) {
  auto file = makeKernel();
  putNumber<std::uint32_t>(&file[0x1F4], 0xFFFFFFFF);
  EXPECT_EQ(faultOf(file), KernelFault::kIncomplete);
}

TEST(KernelHeader, OldKernelsTellOnlyTheLowHalfOfTheirSize) {
  auto file = makeKernel({.protocol = 0x203});
  putNumber<std::uint16_t>(&file[0x1F6], 0xFFFF);
  EXPECT_EQ(faultOf(file), KernelFault::kNone);
  putNumber<std::uint16_t>(&file[0x206], 0x204);
  EXPECT_EQ(faultOf(file), KernelFault::kIncomplete);
}

TEST(KernelHeader, AKernelThatWantsNoLessThanAllMemoryIsTooLarge) {
  EXPECT_EQ(faultOf(makeKernel({.initialSize = 0xFFFFFFFF})), KernelFault::kTooLarge);
  EXPECT_EQ(faultOf(makeKernel({.preferredAddress = 0xFFFFFFFF})), KernelFault::kTooLarge);
  EXPECT_EQ(faultOf(makeKernel({.preferredAddress = kReachedMemory, .initialSize = 1})),
            KernelFault::kTooLarge);
  auto file = makeKernel();
  file[0x25C] = 1;
  EXPECT_EQ(faultOf(file), KernelFault::kTooLarge);
}

TEST(KernelHeader, AKernelMayWantAllThatIsReached) {
  constexpr std::uint32_t kAll = kReachedMemory - 0x200000;
  EXPECT_EQ(faultOf(makeKernel({.initialSize = kAll})), KernelFault::kNone);
  EXPECT_EQ(faultOf(makeKernel({.initialSize = kAll + 1})), KernelFault::kTooLarge);
}

TEST(KernelHeader, AHeaderOfAllOnesWithSignaturesIsRefused) {
  auto file = makeKernel();
  std::fill(file.begin() + 0x1F1, file.begin() + 0x268, std::uint8_t{0xFF});
  putNumber<std::uint16_t>(&file[0x1FE], 0xAA55);
  putNumber<std::uint32_t>(&file[0x202], 0x53726448);
  EXPECT_EQ(faultOf(file), KernelFault::kLargeSetup);
}

TEST(KernelHeader, TellsWhereTheKernelsAreaEnds) {
  EXPECT_EQ(headerOf(makeKernel()).areaEnd(0x4000), 0x300000u);
  EXPECT_EQ(headerOf(makeKernel({.preferredAddress = 0})).areaEnd(0x4000), 0x200000u);
}

TEST(KernelHeader, TheAreaHoldsTheLoadedFile) {
  EXPECT_EQ(headerOf(makeKernel({.initialSize = 16})).areaEnd(0x400000), 0x500000u);
}

TEST(KernelHeader, TheAreaOfAFileBeyondAllMemoryNeverEnds) {
  EXPECT_EQ(headerOf(makeKernel()).areaEnd(kReachedMemory + 1), 0xFFFFFFFFu);
  EXPECT_EQ(headerOf(makeKernel()).areaEnd(0xFFFFFFF0), 0xFFFFFFFFu);
}

TEST(KernelHeader, KernelsTellTheirAreaFromProtocol210On) {
  EXPECT_EQ(headerOf(makeKernel({.protocol = 0x20A})).areaEnd(0x4000), 0x300000u);
}

TEST(KernelHeader, TheAreaOfAnOldKernelIsFiveTimesItsFile) {
  EXPECT_EQ(headerOf(makeKernel({.protocol = 0x209})).areaEnd(0x10000), 0x100000u + 5 * 0x10000);
  EXPECT_EQ(headerOf(makeKernel({.protocol = 0x209})).areaEnd(0x37000000), 0xFFFFFFFFu);
}

TEST(KernelHeader, TheRamDiskIsWithinWhatTheKernelReaches) {
  EXPECT_EQ(headerOf(makeKernel({.ramDiskLast = 0x7FFFFFFF})).ramDiskCeiling(), 0x38000000u);
  EXPECT_EQ(headerOf(makeKernel({.ramDiskLast = 0x37FFFFFF})).ramDiskCeiling(), 0x38000000u);
  EXPECT_EQ(headerOf(makeKernel({.ramDiskLast = 0xFFFFFF})).ramDiskCeiling(), 0x1000000u);
  EXPECT_EQ(headerOf(makeKernel({.ramDiskLast = 0xFFFFFFFF})).ramDiskCeiling(), 0x38000000u);
}

TEST(KernelHeader, OldKernelsTake255CharactersOfCommandLine) {
  EXPECT_EQ(headerOf(makeKernel({.protocol = 0x205})).longestCommandLine(), 255u);
  EXPECT_EQ(headerOf(makeKernel({.protocol = 0x206})).longestCommandLine(), 2047u);
}

TEST(KernelHeader, ParametersChangeTheirFieldsAndNothingElse) {
  auto file = makeKernel();
  file[0x211] = 0x21;  // says nothing while it unpacks itself
  KernelHeader header = headerOf(file);
  header.setParameters(
      {.commandLineAt = 0x1E000, .ramDiskAt = 0x1234000, .ramDiskSize = 0x5678, .heapEnd = 0xDE00});
  auto expected = headerOf(file).bytes();
  putNumber<std::uint16_t>(&expected[0x1FA], 0xFFFF);
  expected[0x210] = 0xFF;
  expected[0x211] = 0xA1;
  putNumber<std::uint32_t>(&expected[0x214], 0x100000);
  putNumber<std::uint32_t>(&expected[0x218], 0x1234000);
  putNumber<std::uint32_t>(&expected[0x21C], 0x5678);
  putNumber<std::uint16_t>(&expected[0x224], 0xDE00);
  putNumber<std::uint32_t>(&expected[0x228], 0x1E000);
  EXPECT_EQ(header.bytes(), expected);
}

}  // namespace
}  // namespace omniset::loader::test
