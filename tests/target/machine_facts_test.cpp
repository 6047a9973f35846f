// What the kernel's tables tell.
#include "target/machine_facts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace omniset::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(MachineFacts, ProcessorAndMemoryInOneLine) {
  EXPECT_EQ(describeMachine("processor\t: 0\nmodel name\t: Pentium III (Coppermine)\n",
                            "MemTotal:         250012 kB\nMemFree: 1 kB\n"),
            "Pentium III (Coppermine), 244 MB");
}

TEST(MachineFacts, AnUnknownProcessorIsSaidToBeSo) {
  EXPECT_EQ(describeMachine("", ""), "unknown processor, 0 MB");
}

TEST(MachineFacts, TheFirstLineOfAKeyCounts) {
  EXPECT_EQ(tableValue("a: 1\nb b : 2 3 \nb b: 4", "b b"), "2 3");
  EXPECT_EQ(tableValue("a: 1", "A"), "");
  EXPECT_EQ(tableValue("a", "a"), "");
}

TEST(MachineFacts, WholeDisksAreThoseWithoutANumber) {
  EXPECT_THAT(diskNames("major minor  #blocks  name\n\n"
                        "   8        0      65536 sda\n   8        1      64512 sda1\n"
                        " 254        0     524288 vda\n   8       16     100 sdb\n"
                        "   1        0       4096 ram0\n   2        0       1440 fd0\n"
                        "  11        0       4096 sr0\n   8       99      1 sd\n"),
              ElementsAre("sda", "sdb", "vda"));
  EXPECT_THAT(diskNames(""), IsEmpty());
}

// The kernel lists them as their drivers finish.
TEST(MachineFacts, DisksComeInTheOrderOfTheirNames) {
  EXPECT_THAT(diskNames("8 1 1 vdb\n8 1 1 sdaa\n8 1 1 sdc\n8 1 1 sdz\n8 1 1 vda\n8 1 1 sda\n"),
              ElementsAre("sda", "sdc", "sdz", "sdaa", "vda", "vdb"));
}

TEST(MachineFacts, InterfacesWithoutTheLoopback) {
  EXPECT_THAT(
      interfaceNames("Inter-|   Receive\n face |bytes\n    lo:  0 0\n  eth0: 1 2\neth1:3\n"),
      ElementsAre("eth0", "eth1"));
}

TEST(MachineFacts, TheLoadersOfMediaNameThemselvesOnTheCommandLine) {
  EXPECT_TRUE(wasBootedFromMedium("load_ramdisk=1 initrd=initrd.rgz"));
  EXPECT_TRUE(wasBootedFromMedium("initrd=initrd.rgz -hdd-install"));
  EXPECT_FALSE(wasBootedFromMedium("initrd=initrd.rgz"));
  EXPECT_FALSE(wasBootedFromMedium("root=/dev/ram0 console=ttyS0,115200"));
}

}  // namespace
}  // namespace omniset::test
