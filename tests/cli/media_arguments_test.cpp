#include "parse_arguments.h"

namespace omniset::test {

TEST(MediaArguments, DrivesTakesJson) {
  EXPECT_FALSE(understood<DrivesOptions>("drives").json);
  EXPECT_TRUE(understood<DrivesOptions>("drives --json").json);
}

TEST(MediaArguments, DiskTakesDevicePackagesAndScript) {
  const auto options = understood<DiskOptions>(
      "disk --device /dev/sdb --packages some --select a,b --script own.rsc --baud 19200 --yes "
      "--json");
  EXPECT_EQ(options.device, "/dev/sdb");
  EXPECT_EQ(options.folder, "some");
  EXPECT_EQ(options.select, (std::vector<std::string>{"a", "b"}));
  EXPECT_EQ(options.script, "own.rsc");
  EXPECT_EQ(options.baudRate, 19200);
  EXPECT_TRUE(options.yes);
  EXPECT_TRUE(options.json);
}

TEST(MediaArguments, DiskErasesNothingAndSetsNoSpeedUnlessTold) {
  const auto options = understood<DiskOptions>("disk --device E: --packages some --select-all");
  EXPECT_FALSE(options.yes);
  EXPECT_EQ(options.baudRate, 0);
  EXPECT_TRUE(options.script.empty());
  EXPECT_TRUE(options.select.empty());
}

TEST(MediaArguments, DiskWithoutWhatItNeedsIsRefused) {
  expectComplaint("disk --packages x --select-all --yes", "Say which disk to make: --device");
  expectComplaint("disk --device x --select-all", "Say where the packages are: --packages FOLDER.");
  expectComplaint("disk --device x --packages x", "Say which packages to install");
  expectComplaint("disk --device x --packages x --select a --select-all", "--select-all already");
  expectComplaint("disk --device x --packages x --select-all --baud 7", "is not a speed");
}

TEST(MediaArguments, FloppyHasTheWindowsLabelUnlessTold) {
  const auto options = understood<FloppyOptions>("floppy --device A:");
  EXPECT_EQ(options.device, "A:");
  EXPECT_EQ(options.label, "veltrona");
  EXPECT_FALSE(options.yes);
  EXPECT_EQ(understood<FloppyOptions>("floppy --device A: --label lab --yes").label, "lab");
}

TEST(MediaArguments, EmptyLabelIsUnnamed) {
  const auto parsed = parseArguments({"floppy", "--device", "A:", "--label", ""});
  EXPECT_EQ(std::get<FloppyOptions>(std::get<Arguments>(parsed).command).label, "Unnamed");
}

TEST(MediaArguments, FloppyWithoutADeviceIsRefused) {
  expectComplaint("floppy --yes", "Say where the floppy is: --device DEVICE.");
  const auto parsed = parseArguments({"floppy", "--device", "", "--yes"});
  EXPECT_NE(std::get<EarlyEnd>(parsed).text.find("--device is empty"), std::string::npos);
}

}  // namespace omniset::test
