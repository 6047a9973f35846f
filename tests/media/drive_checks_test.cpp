#include "media/drive_checks.h"

#include "core/error.h"
#include "tests/contract/raised_text.h"
#include "tests/media/media_fixture.h"

namespace omniset::test {
namespace {

using ::testing::HasSubstr;

constexpr std::uint64_t kMegabyte = 1 << 20;

DriveFacts drive(std::uint64_t bytes, const std::string& label = {},
                 const std::string& obstacle = {}) {
  return {bytes, label, "", obstacle, bytes};
}

class DriveChecks : public MediaFixture {
 protected:
  std::string obstacle(const DriveFacts& facts) {
    const std::string found =
        driveObstacle("E:\\", facts, plainInfo(), fakeServices(volumes, format));
    for (const std::string& call : volumes.calls) {
      EXPECT_THAT(call, ::testing::Not(::testing::AnyOf(HasSubstr("write"), HasSubstr("create"))));
    }
    return found;
  }

  // The text of the Failure, or the obstacle.
  std::string refusal(const RInfo& what) {
    try {
      return driveObstacle("E:\\", drive(512 * kMegabyte), what, fakeServices(volumes, format));
    } catch (const Failure& failure) {
      return failure.what();
    }
  }
  std::string refusal(const std::vector<std::string>& packages) {
    RInfo what = plainInfo();
    what.packageFiles = packages;
    return refusal(what);
  }
};

TEST_F(DriveChecks, FindNothingAgainstADriveThatIsLargeEnough) {
  EXPECT_EQ(obstacle(drive(32 * kMegabyte)), "");
}

TEST_F(DriveChecks, TellWhatHindersTheDrive) {
  EXPECT_EQ(obstacle(drive(32 * kMegabyte, "", "it is mounted on /home")),
            "E:\\ cannot be used: it is mounted on /home.");
  EXPECT_EQ(obstacle({}), "E:\\ cannot be used: there is no medium in it.");
}

TEST_F(DriveChecks, RefuseADriveThatIsTooSmallWithBothSizes) {
  volumes.files[joinPath("packages", "system-2.9.bdl")].resize(32 * kMegabyte);
  EXPECT_THAT(obstacle(drive(32 * kMegabyte)),
              HasSubstr("E:\\ is too small: it has 32 MB, and 33 MB are needed."));
  EXPECT_EQ(obstacle(drive(40 * kMegabyte)), "");
}

TEST_F(DriveChecks, RefuseADriveThatFat16CannotFill) {
  EXPECT_THAT(obstacle(drive(kLargestFat16 + 512)), HasSubstr("no more than 4 GB"));
  EXPECT_EQ(obstacle(drive(kLargestFat16)), "");
}

TEST_F(DriveChecks, CountOnNoMoreThanTheFormatUses) {
  volumes.files[joinPath("packages", "system-2.9.bdl")].resize(32 * kMegabyte);
  DriveFacts facts = drive(8192 * kMegabyte);
  facts.mostUsed = 16 * kMegabyte;
  EXPECT_THAT(obstacle(facts), HasSubstr("of its 8192 MB no more than 16 MB are used"));
  facts.mostUsed = 2047 * kMegabyte;
  EXPECT_EQ(obstacle(facts), "");
}

TEST_F(DriveChecks, NameAPackageThatIsGone) {
  const std::string package = joinPath("packages", "system-2.9.bdl");
  volumes.files.erase(package);
  EXPECT_EQ(raisedText<Failure>([&] { obstacle(drive(32 * kMegabyte)); }),
            "Cannot open file: " + package);
}

TEST_F(DriveChecks, RefuseNamesThatCannotBeThere) {
  for (const std::string name : {"a:b.bdl", "a?.bdl", "con.bdl", "a|b.bdl", "f\xC3\xBCr.bdl"}) {
    EXPECT_EQ(refusal({name}), "A package of this name cannot be on a disk: " + name);
  }
  EXPECT_EQ(refusal({"system-2.9.bdl", "SYSTEM-2.9.bdl"}),
            "Two packages have the same name but for case: SYSTEM-2.9.bdl");
}

TEST_F(DriveChecks, RefuseMoreNamesThanTheRootFolderHolds) {
  const auto names = [](int count) {
    std::vector<std::string> packages;
    for (int i = 100; i < 100 + count; ++i) {
      packages.push_back("advanced-tools-" + std::to_string(i) + "-2.9.27.bdl");
    }
    return packages;
  };
  for (const std::string& name : names(130)) volumes.files[joinPath("packages", name)];
  EXPECT_EQ(refusal(names(125)), "");
  EXPECT_THAT(refusal(names(130)), HasSubstr("too many or too long names"));
}

TEST_F(DriveChecks, RefusePackagesAndScriptsOnTheDriveItself) {
  RInfo what = plainInfo();
  what.packageDirectory = "e:\\packages";
  EXPECT_EQ(refusal(what), "The packages are on the drive that is to be erased: e:\\packages");
  what = plainInfo();
  what.scriptFile = "E:\\own.rsc";
  EXPECT_EQ(refusal(what), "");
  what.useScriptFile = true;
  EXPECT_EQ(refusal(what), "The script is on the drive that is to be erased: E:\\own.rsc");
}

TEST_F(DriveChecks, CountWholeClusters) {
  EXPECT_EQ(bytesNeeded({1, 4096, 4097}, 32 * kMegabyte) - bytesNeeded({}, 32 * kMegabyte),
            3u * 8192);
}

TEST_F(DriveChecks, WantAFloppyOf1440Kilobytes) {
  EXPECT_EQ(floppyObstacle("A:\\", drive(kFloppyBytes)), "");
  EXPECT_EQ(floppyObstacle("A:\\", drive(720 * 1024)),
            "A:\\ is too small: it has 720 KB, and a floppy of 1440 KB is needed.");
  EXPECT_EQ(floppyObstacle("A:\\", drive(64 * kMegabyte)), "A:\\ is no floppy: it has 64 MB.");
}

TEST_F(DriveChecks, DescribeADriveWithSizeAndLabel) {
  EXPECT_EQ(driveDescription("E:\\", drive(512 * kMegabyte, "KESTRIX")),
            "E:\\ (512 MB, label \"KESTRIX\")");
  EXPECT_EQ(driveDescription("E:\\", drive(16384 * kMegabyte)), "E:\\ (16 GB, no label)");
}

}  // namespace
}  // namespace omniset::test
