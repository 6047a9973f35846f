// What the kernel's tables tell.
#include "target/machine_facts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/error.h"

namespace omniset::test {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
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

TEST(MachineFacts, AvailableMemoryIsInBytes) {
  EXPECT_EQ(availableMemory("MemTotal: 27892 kB\nMemFree: 1 kB\nMemAvailable:   25432 kB\n"),
            25432u * 1024);
  EXPECT_EQ(availableMemory("MemAvailable: 917504 kB\n"), 917504u * 1024);
  EXPECT_EQ(availableMemory("MemTotal: 27892 kB\n"), 0u);
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

TEST(MachineFacts, ItsOwnDiskIsInstalledByAWordOfTheCommandLine) {
  EXPECT_TRUE(installsOwnDisk("load_ramdisk=1 initrd=initrd.rgz -hdd-install\n"));
  EXPECT_TRUE(installsOwnDisk("-hdd-install omniset.volume=12345678"));
  EXPECT_TRUE(installsOwnDisk("a\t-hdd-install\tb"));
  EXPECT_FALSE(installsOwnDisk("load_ramdisk=1 initrd=initrd.rgz\n"));
  EXPECT_FALSE(installsOwnDisk("no-hdd-install -hdd-install=1 -hdd-installed hdd-install"));
  EXPECT_FALSE(installsOwnDisk(""));
}

TEST(MachineFacts, TheVolumeThatWasBootedIsOnTheCommandLine) {
  EXPECT_EQ(bootedVolumeNumber("-hdd-install omniset.volume=1234ABCD\n"), 0x1234ABCDu);
  EXPECT_EQ(bootedVolumeNumber("omniset.volume=0000000a x"), 10u);
  EXPECT_EQ(bootedVolumeNumber("omniset.volume=FFFFFFFF"), 0xFFFFFFFFu);
  // The loader's own word is the last.
  EXPECT_EQ(bootedVolumeNumber("omniset.volume=11111111 omniset.volume=22222222"), 0x22222222u);
}

TEST(MachineFacts, WithoutItsWordThereIsNoVolume) {
  for (const char* line :
       {"", "omniset.volume", "xomniset.volume=12345678", "OMNISET.VOLUME=12345678"}) {
    EXPECT_EQ(bootedVolumeNumber(line), std::nullopt) << line;
  }
}

TEST(MachineFacts, AVolumeThatIsNoNumberOfEightDigitsIsRefused) {
  for (const char* word : {"omniset.volume=", "omniset.volume=1234567", "omniset.volume=123456789",
                           "omniset.volume=1234-ABC", "omniset.volume=-1234567",
                           "omniset.volume=12345678x", "omniset.volume=1234567G"}) {
    try {
      bootedVolumeNumber(std::string("a ") + word + " b");
      ADD_FAILURE() << word;
    } catch (const Failure& e) {
      EXPECT_THAT(e.what(), AllOf(HasSubstr(std::string("\"") + word + "\" has to have 8"),
                                  EndsWith(" Nothing was changed on any disk.")));
    }
  }
}

}  // namespace
}  // namespace omniset::test
