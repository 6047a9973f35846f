#include "cli/drives_command.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "cli/exit_status.h"
#include "tests/fakes/captured_trace.h"
#include "tests/fakes/fake_volumes.h"

namespace omniset::test {

namespace {

class DrivesCommand : public testing::Test {
 protected:
  DrivesCommand() { volumes.drives['C']; }

  int run(bool json = false) { return runDrives({json}, {out, err}, volumes); }

  SilentTrace silent;
  FakeVolumes volumes;
  std::ostringstream out, err;
};

}  // namespace

TEST_F(DrivesCommand, TellsWhatIsKnownOfEachDrive) {
  volumes.drives['E'].facts = {512 << 20, "KESTRIX", "FAT16 volume", ""};
  volumes.drives['F'].type = 3;
  volumes.drives['F'].facts = {std::uint64_t{80} << 30, "", "", "it is mounted on /mnt"};
  volumes.drives['G'].facts = {};
  EXPECT_EQ(run(), kExitDone);
  EXPECT_EQ(
      out.str(),
      "Drive  Media              Size  Label    Contents\n"
      "E:\\    Removable media  512 MB  KESTRIX  FAT16 volume\n"
      "F:\\    Hard disk         80 GB  -        -             cannot be used: it is mounted on "
      "/mnt\n"
      "G:\\    Removable media       -  -        -             no medium, or it cannot be "
      "read\n");
  EXPECT_EQ(err.str(), "");
}

TEST_F(DrivesCommand, NoDriveIsSaidAndNoFailure) {
  EXPECT_EQ(run(), kExitDone);
  EXPECT_EQ(out.str(), "");
  EXPECT_TRUE(err.str().starts_with("There is no drive that a disk can be made of."));
}

TEST_F(DrivesCommand, JsonIsAnObjectPerDrive) {
  volumes.drives['E'].type = 3;
  volumes.drives['E'].facts = {1000, "A\x1b\xFF", "ext4 volume", "it is mounted on /x"};
  EXPECT_EQ(run(true), kExitDone);
  EXPECT_EQ(nlohmann::json::parse(out.str()),
            nlohmann::json::parse(R"({"drive":"E:\\","media":"Hard disk","size":1000,
              "label":"A\u001b\uFFFD","contents":"ext4 volume","obstacle":"it is mounted on /x"})"));
  EXPECT_EQ(out.str().find('\x1b'), std::string::npos);
}

TEST_F(DrivesCommand, TableShowsNoControlCharacters) {
  volumes.drives['E'].facts = {1000, "A\x1b[2J", "", ""};
  run();
  EXPECT_NE(out.str().find("A?[2J"), std::string::npos) << out.str();
}

}  // namespace omniset::test
