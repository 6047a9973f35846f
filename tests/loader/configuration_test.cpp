#include "payload/loader/common/configuration.h"

#include <gmock/gmock.h>

#include <string>

namespace omniset::loader::test {
namespace {

using ::testing::StrEq;

struct Read {
  ConfigurationFault fault;
  BootConfiguration configuration;
};

Read read(std::string_view text) {
  Read result{};
  result.fault = readConfiguration(text, result.configuration);
  return result;
}

void expectSystem(std::string_view text, const std::string& kernel, const std::string& commandLine,
                  const std::string& ramDisk) {
  const auto [fault, configuration] = read(text);
  EXPECT_EQ(fault, ConfigurationFault::kNone);
  EXPECT_THAT(configuration.kernel.data(), StrEq(kernel));
  EXPECT_THAT(configuration.commandLine.data(), StrEq(commandLine));
  EXPECT_THAT(configuration.ramDisk.data(), StrEq(ramDisk));
}

TEST(BootConfiguration, OfTheNetworkBootNamesKernelAndRamDisk) {
  expectSystem("TIMEOUT 200\nLABEL linux\n\tKERNEL linux\n\tAPPEND initrd=initrd.rgz\n", "linux",
               "initrd=initrd.rgz", "initrd.rgz");
}

TEST(BootConfiguration, OfTheFloppyPassesTheWholeCommandLine) {
  expectSystem("LABEL linux\n\tKERNEL linux\n\tAPPEND load_ramdisk=1 initrd=initrd.rgz\n", "linux",
               "load_ramdisk=1 initrd=initrd.rgz", "initrd.rgz");
}

TEST(BootConfiguration, OfTheLocalDiskHasMoreBehindTheRamDisk) {
  expectSystem(
      "LABEL linux\n\tKERNEL linux\n\tAPPEND load_ramdisk=1 initrd=initrd.rgz -hdd-install\n",
      "linux", "load_ramdisk=1 initrd=initrd.rgz -hdd-install", "initrd.rgz");
}

TEST(BootConfiguration, KeywordsMayBeInSmallLetters) {
  expectSystem("label a\nkernel b\nappend c\nlabel d\nKernel e\n", "b", "c", "");
}

TEST(BootConfiguration, LinesMayEndWithCarriageReturns) {
  expectSystem("LABEL a\r\nKERNEL b\r\nAPPEND initrd=c\r\n", "b", "initrd=c", "c");
}

TEST(BootConfiguration, LinesMayEndWithNothingButCarriageReturns) {
  expectSystem("LABEL a\rKERNEL b\rAPPEND initrd=c\r", "b", "initrd=c", "c");
}

TEST(BootConfiguration, NamesMayHaveCharactersOf8Bits) {
  expectSystem("KERNEL \xFC\x80\xFFx\nAPPEND initrd=\xE4 \xA0y\n", "\xFC\x80\xFFx",
               "initrd=\xE4 \xA0y", "\xE4");
}

TEST(BootConfiguration, ASecondOneLeavesNothingOfTheFirst) {
  BootConfiguration configuration;
  ASSERT_EQ(readConfiguration("KERNEL kernel\nAPPEND initrd=disk quiet\n", configuration),
            ConfigurationFault::kNone);
  ASSERT_EQ(readConfiguration("KERNEL k\nAPPEND initrd=d\n", configuration),
            ConfigurationFault::kNone);
  EXPECT_THAT(configuration.kernel.data(), StrEq("k"));
  EXPECT_THAT(configuration.commandLine.data(), StrEq("initrd=d"));
  EXPECT_THAT(configuration.ramDisk.data(), StrEq("d"));
}

TEST(BootConfiguration, TheLastLineNeedsNoEnd) {
  expectSystem("KERNEL b\nAPPEND initrd=c", "b", "initrd=c", "c");
}

TEST(BootConfiguration, BlanksAroundWordsDoNotCount) {
  expectSystem(" \t KERNEL\t  b \t\n  APPEND   x  y \t \n", "b", "x  y", "");
}

TEST(BootConfiguration, CommentsUnknownKeywordsAndEmptyLinesArePassedOver) {
  expectSystem("# KERNEL no\n\nPROMPT 1\nKERNELS no\nKERN no\nKERNEL b\nDISPLAY x\n", "b", "", "");
}

TEST(BootConfiguration, OfSeveralSystemsTheFirstCounts) {
  expectSystem("LABEL a\nKERNEL b\nAPPEND c\nLABEL d\nKERNEL e\nAPPEND f\n", "b", "c", "");
}

TEST(BootConfiguration, WithoutRamDiskHasNone) {
  expectSystem("KERNEL b\n", "b", "", "");
}

TEST(BootConfiguration, OtherParametersAreNotTheRamDisk) {
  expectSystem("KERNEL b\nAPPEND noinitrd=x initrd xinitrd=y initrdz=w\n", "b",
               "noinitrd=x initrd xinitrd=y initrdz=w", "");
}

TEST(BootConfiguration, AnEmptyRamDiskIsNone) {
  expectSystem("KERNEL b\nAPPEND initrd= quiet\n", "b", "initrd= quiet", "");
}

TEST(BootConfiguration, ControlCharactersAreBlanks) {
  using namespace std::string_view_literals;
  expectSystem("KERNEL b\0c\nAPPEND x\0y\x1Bz\n"sv, "b", "x y z", "");
}

TEST(BootConfiguration, WithoutKernelIsRefused) {
  for (const char* text : {"", "\n\n", "KERNEL", "KERNEL \t\n", "LABEL linux\nAPPEND x\n"}) {
    EXPECT_EQ(read(text).fault, ConfigurationFault::kNoKernel) << text;
  }
}

TEST(BootConfiguration, TheKernelOfASecondSystemIsNotTheFirstOnes) {
  EXPECT_EQ(read("LABEL a\nAPPEND x\nLABEL b\nKERNEL c\n").fault, ConfigurationFault::kNoKernel);
}

TEST(BootConfiguration, AKernelsNameHasAtMost127Characters) {
  expectSystem("KERNEL " + std::string(127, 'k') + "\n", std::string(127, 'k'), "", "");
  EXPECT_EQ(read("KERNEL " + std::string(128, 'k') + "\n").fault, ConfigurationFault::kLongName);
}

TEST(BootConfiguration, ARamDisksNameHasAtMost127Characters) {
  const std::string longest = "initrd=" + std::string(127, 'r');
  expectSystem("KERNEL b\nAPPEND " + longest, "b", longest, std::string(127, 'r'));
  EXPECT_EQ(read("KERNEL b\nAPPEND " + longest + "r").fault, ConfigurationFault::kLongName);
}

TEST(BootConfiguration, ACommandLineHasAtMost2047Characters) {
  const std::string longest(2047, 'a');
  expectSystem("KERNEL b\nAPPEND " + longest, "b", longest, "");
  EXPECT_EQ(read("KERNEL b\nAPPEND a" + longest).fault, ConfigurationFault::kLongCommandLine);
}

}  // namespace
}  // namespace omniset::loader::test
