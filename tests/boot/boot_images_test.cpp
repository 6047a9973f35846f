#include "boot/boot_images.h"

#include <gmock/gmock.h>

#include <string>

#include "core/byte_cursor.h"
#include "core/error.h"
#include "tests/contract/raised_text.h"

namespace omniset::test {
namespace {

std::string textOf(int number) {
  return std::string(asText(loadBootImage(number).bytes()));
}

TEST(LoadBootImage, TheConfigurationOfAFloppyHasThreeLines) {
  EXPECT_EQ(textOf(kFloppyConfigurationImage),
            "LABEL linux\n\tKERNEL linux\n\tAPPEND load_ramdisk=1 initrd=initrd.rgz\n");
  EXPECT_EQ(textOf(kFloppyConfigurationImage).size(), 67u);
}

TEST(LoadBootImage, ThatOfADiskDiffersOnlyAtTheEndOfItsLastLine) {
  std::string expected = textOf(kFloppyConfigurationImage);
  expected.insert(expected.size() - 1, " -hdd-install");
  EXPECT_EQ(textOf(kDiskConfigurationImage), expected);
  EXPECT_EQ(expected.size(), 80u);
}

TEST(LoadBootImage, ThatOfTheNetworkHasFourLines) {
  EXPECT_EQ(textOf(kNetworkConfigurationImage),
            "TIMEOUT 200\nLABEL linux\n\tKERNEL linux\n\tAPPEND initrd=initrd.rgz\n");
  EXPECT_EQ(textOf(kNetworkConfigurationImage).size(), 64u);
}

TEST(LoadBootImage, TheLoadersHaveTheLengthsThatAreToldOfThem) {
  EXPECT_EQ(loadBootImage(kDiskLoaderImage).length, 7836u);
  EXPECT_EQ(loadBootImage(kNetworkBootProgramImage).length, 10824u);
  EXPECT_EQ(loadBootImage(kEtherbootImage).length, 22396u);
}

TEST(LoadBootImage, EachIsWhatItIsTakenFor) {
  const auto kernel = loadBootImage(kKernelImage).bytes();
  ASSERT_GT(kernel.size(), 0x206u);
  EXPECT_EQ(asText(kernel.subspan(0x202, 4)), "HdrS");
  const auto ramDisk = loadBootImage(kRamDiskImage).bytes();
  ASSERT_GT(ramDisk.size(), 2u);
  EXPECT_EQ(ramDisk[0] << 8 | ramDisk[1], 0x1F8B);  // gzip
  EXPECT_EQ(asText(loadBootImage(kEtherbootImage).bytes().first(4)),
            "\x7F"
            "ELF");
}

TEST(LoadBootImage, EveryNumberOfTheCatalogueIsThere) {
  for (int number = kKernelImage; number <= kEtherbootImage; ++number) {
    EXPECT_GT(loadBootImage(number).length, 0u) << number;
  }
}

TEST(LoadBootImage, CopiesNothing) {
  EXPECT_EQ(loadBootImage(kKernelImage).content, loadBootImage(kKernelImage).content);
}

TEST(LoadBootImage, AnUnknownNumberIsRaised) {
  for (const int number : {0, -1, 119, 128}) {
    EXPECT_THAT(raisedText<Error>([&] { loadBootImage(number); }),
                testing::StartsWith("FindResource()"));
  }
}

}  // namespace
}  // namespace omniset::test
