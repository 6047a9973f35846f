#include "media/floppy_maker.h"

#include "core/error.h"
#include "tests/media/media_fixture.h"

namespace omniset::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Pair;

class MakingAFloppy : public MediaFixture {};

TEST_F(MakingAFloppy, PutsTheInstallerSystemAndTheLabelOnIt) {
  const FloppyProgress progress = makeFloppy("veltrona");
  EXPECT_EQ(progress.statusText, "Completed");
  EXPECT_EQ(progress.step, kFloppySteps);
  EXPECT_THAT(
      volumes.drives['A'].files,
      ElementsAre(Pair("initrd.rgz", bytesOf("image 121")), Pair("label.txt", bytesOf("veltrona")),
                  Pair("ldlinux.sys", bytesOf("image 122")), Pair("linux", bytesOf("image 120")),
                  Pair("syslinux.cfg", bytesOf("image 123"))));
}

TEST_F(MakingAFloppy, CallsTheSystemInThisOrder) {
  makeFloppy("veltrona");
  std::vector<std::string> expected;
  for (const char* name : {"linux", "initrd.rgz", "ldlinux.sys", "syslinux.cfg", "label.txt"}) {
    for (const char* call : {"create A:\\", "write A:\\", "close A:\\"}) {
      expected.push_back(std::string(call) + name);
    }
  }
  for (const char* call : {"open volume A", "seek volume A", "read volume A", "seek volume A",
                           "write volume A", "close volume A", "flush A"}) {
    expected.push_back(call);
  }
  ASSERT_GT(volumes.calls.size(), expected.size());
  volumes.calls.resize(expected.size());
  EXPECT_EQ(volumes.calls, expected);
}

TEST_F(MakingAFloppy, AnEmptyLabelIsAnEmptyFile) {
  EXPECT_EQ(makeFloppy("").statusText, "Completed");
  EXPECT_EQ(fileOn('A', "label.txt"), "");
}

TEST_F(MakingAFloppy, TouchesNoOtherDrive) {
  const auto drives = volumes.drives;
  makeFloppy("veltrona");
  for (const char letter : {'C', 'E', 'F'}) EXPECT_EQ(volumes.drives[letter], drives.at(letter));
}

// The reader takes each entry at once: the steps as they are posted.
TEST_F(MakingAFloppy, CountsItsStepsWithTheLargeFilesTwice) {
  FloppyMaker maker("veltrona", fakeServices(volumes, format));
  std::vector<std::string> posted;
  const auto take = [&] {
    while (const auto progress = maker.progress().pop()) {
      posted.push_back(std::to_string(progress->step) + " " + progress->statusText);
    }
  };
  // But for the last step with a file, whose place the next one takes at once.
  volumes.onCall = take;
  maker.run();
  take();
  EXPECT_THAT(
      posted,
      ElementsAre("1 Formatting drive...", "2 Copying system files...", "4 Copying system files...",
                  "6 Copying system files...", "7 Copying system files...", "8 Setting label...",
                  "9 Writing boot sector...", "9 Checking what was written...", "10 Completed"));
}

TEST_F(MakingAFloppy, FormatsTwiceOnXpAnd2003) {
  volumes.system = {true, 5, 1};
  makeFloppy("veltrona");
  EXPECT_EQ(format.commandLines.size(), 2u);
}

TEST_F(MakingAFloppy, GoesThroughTheVolumeOnTheNtFamily) {
  makeFloppy("veltrona");
  EXPECT_THAT(volumes.calls, ::testing::Contains("open volume A"));
  EXPECT_THAT(volumes.calls, ::testing::Not(::testing::Contains("open absolute disk")));
  EXPECT_THAT(format.commandLines,
              ElementsAre("C:\\WINNT\\system32\\format.com A: /FS:FAT /Q /X /V:"));
}

TEST_F(MakingAFloppy, GoesThroughAbsoluteSectorsOnWindows98) {
  volumes.system = {false, 4, 10};
  EXPECT_EQ(makeFloppy("veltrona").statusText, "Completed");
  EXPECT_THAT(volumes.calls, ::testing::Not(::testing::Contains("open volume A")));
  EXPECT_THAT(volumes.calls, ::testing::Contains("absolute write 0"));
  EXPECT_THAT(format.commandLines, ElementsAre("C:\\WINDOWS\\Command\\format.com A: /Q /V:xxx"));
  const DriveSector& sector = volumes.drives['A'].firstSector;
  EXPECT_TRUE(
      std::equal(sector.begin() + 62, sector.begin() + 510, bootSectorTemplate.begin() + 62));
  EXPECT_TRUE(
      std::equal(sector.begin() + 11, sector.begin() + 62, formattedSector(1).begin() + 11));
}

TEST_F(MakingAFloppy, AWriteProtectedFloppyFailsWithItsFirstFile) {
  format.behaviour = FakeFormat::Behaviour::kDoesNothing;
  volumes.drives['A'].files["linux"] = bytesOf("an older one");
  const FloppyProgress progress = makeFloppy("veltrona");
  EXPECT_EQ(progress.statusText, "Cannot create file");
  EXPECT_EQ(progress.step, 2);
  EXPECT_THAT(trace.text(), HasSubstr("floppy maker:Cannot create file\n"));
}

TEST_F(MakingAFloppy, FailsWithTheNameOfAFileThatDoesNotReadBack) {
  volumes.corrupt = [&](const std::string& path, Bytes& bytes) {
    if (path == "A:\\label.txt") bytes.push_back('\n');
  };
  EXPECT_EQ(makeFloppy("veltrona").statusText, "A:\\label.txt differs from what was written");
}

TEST_F(MakingAFloppy, EndsBetweenFilesWhenItIsAskedTo) {
  FloppyMaker maker("veltrona", fakeServices(volumes, format));
  volumes.onCall = [&] {
    if (fileOn('A', "linux") == "image 120") maker.stopEvent().set();
  };
  EXPECT_THROW(maker.run(), Failure);
  EXPECT_EQ(maker.progress().pop()->statusText, "Canceled");
  EXPECT_EQ(fileOn('A', "initrd.rgz"), "(no such file)");
  EXPECT_EQ(volumes.openDevices, 0);
}

}  // namespace
}  // namespace omniset::test
