#include "cli/drive_letter.h"

#include <gtest/gtest.h>

#include "cli/bad_input.h"
#include "tests/fakes/captured_trace.h"
#include "tests/fakes/fake_volumes.h"

namespace omniset::test {

TEST(DriveLetter, IsTakenWithAndWithoutColonAndSlash) {
  for (const char* written : {"e", "E", "e:", "E:", "E:\\", "e:/"}) {
    EXPECT_EQ(driveLetter(written), 'E') << written;
  }
  for (const char* written : {"", ":", "1:", "EE:", "E:x", "E:\\\\", "/dev/sdb", "\xE9:"}) {
    EXPECT_EQ(driveLetter(written), std::nullopt) << written;
  }
  EXPECT_EQ(driveRoot('E'), "E:\\");
}

TEST(RequireDisk, TakesOnlyDrivesOfTheListAndSaysWhy) {
  const SilentTrace silent;
  FakeVolumes volumes;
  volumes.drives['A'];
  volumes.drives['C'].type = 3;
  volumes.drives['D'].type = 5;
  volumes.drives['E'];
  const auto refusal = [&](char letter) -> std::string {
    try {
      requireDisk(letter, volumes);
    } catch (const BadInput& e) {
      return e.what();
    }
    return "taken";
  };
  EXPECT_EQ(refusal('E'), "taken");
  EXPECT_EQ(refusal('C'),
            "C:\\ cannot be used: the system runs from it. \"omniset-cli drives\" lists the drives "
            "that may be used.");
  EXPECT_TRUE(refusal('A').starts_with("A:\\ cannot be used: \"omniset-cli floppy\" writes"));
  EXPECT_TRUE(refusal('D').starts_with("D:\\ cannot be used: it is not a disk."));
  EXPECT_TRUE(refusal('Q').starts_with("Q:\\ cannot be used: there is no such drive."));
}

}  // namespace omniset::test
