#include "cli/drive_argument.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "cli/bad_input.h"
#include "tests/fakes/temp_folder.h"

namespace omniset::test {

namespace {

template <class Call>
std::string refusal(const Call& call) {
  try {
    call();
  } catch (const BadInput& e) {
    return e.what();
  }
  return "taken";
}

class DriveArgumentPosix : public testing::Test {
 protected:
  TempFolder folder;
  std::string image = folder.path() + "/some.img";
};

}  // namespace

TEST_F(DriveArgumentPosix, LetterStandsForTheImageFile) {
  folder.write("some.img", "x");
  const DriveArgument disk = diskArgument(image);
  EXPECT_EQ(disk.letter, 'D');
  EXPECT_EQ(disk.root, image);
  EXPECT_EQ(disk.device.letter, 'D');
  EXPECT_EQ(disk.device.device, image);
  EXPECT_EQ(floppyArgument(image, false).device.letter, 'A');
}

TEST_F(DriveArgumentPosix, MissingDiskIsRefusedWithTheWayToMakeOne) {
  const std::string text = refusal([&] { diskArgument(image); });
  EXPECT_TRUE(text.starts_with("There is no '" + image + "': name a disk")) << text;
  EXPECT_NE(text.find("truncate -s 64M"), std::string::npos);
}

TEST_F(DriveArgumentPosix, MissingFloppyImageIsCreatedOnlyWhenItMayBe) {
  EXPECT_NE(refusal([&] { floppyArgument(image, false); }).find("add --yes to do it."),
            std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(image));
  floppyArgument(image, true);
  EXPECT_EQ(std::filesystem::file_size(image), 1'474'560u);
}

TEST_F(DriveArgumentPosix, FloppyImageInNoFolderIsRefused) {
  EXPECT_NE(refusal([&] {
              floppyArgument(folder.path() + "/none/f.img", true);
            }).find("cannot be created"),
            std::string::npos);
}

TEST_F(DriveArgumentPosix, EmptyImageIsRefusedWithTheWayOut) {
  folder.write("some.img", "");
  EXPECT_NE(refusal([&] { diskArgument(image); }).find("is empty: give it a size"),
            std::string::npos);
  EXPECT_NE(refusal([&] { floppyArgument(image, true); }).find("is empty: remove it"),
            std::string::npos);
}

}  // namespace omniset::test
